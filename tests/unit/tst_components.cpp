// Runs the documents in components/ on the application's own resources and types.
#include "shell/UserInterface.h"

#include <QDir>
#include <QMetaType>
#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

// What the documents cannot ask of QML: the context property "probe".
class Probe : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE static bool isKnownMetaType(const QByteArray& name)
    {
        return QMetaType::type(name.constData()) != QMetaType::UnknownType;
    }

    Q_INVOKABLE static bool removeDirectory(const QString& path)
    {
        return !path.isEmpty() && QDir(path).removeRecursively();
    }
};

class Setup : public QObject
{
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        AquenSolvar::prepareEngine(*engine);
        engine->rootContext()->setContextProperty("probe", &m_probe);
    }

private:
    Probe m_probe;
};

QUICK_TEST_MAIN_WITH_SETUP(components, Setup)
#include "tst_components.moc"
