// Runs the documents in components/ on the application's own resources and types.
#include "UserInterface.h"

#include <QQmlEngine>
#include <QtQuickTest>

class Setup : public QObject
{
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine* engine) { AquenSolvar::prepareEngine(*engine); }
};

QUICK_TEST_MAIN_WITH_SETUP(components, Setup)
#include "tst_components.moc"
