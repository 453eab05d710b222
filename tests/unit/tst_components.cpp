// SPDX-License-Identifier: LicenseRef-Proprietary
// Runs the documents in components/ on the application's own resources and types.
#include "shell/UserInterface.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

// Gives the documents the context property "unknownMetaTypes": those of the names that QML looks
// types up by that registration has left unknown. Later the framework may add some by itself.
class Setup : public QObject
{
    Q_OBJECT

public slots:
    void qmlEngineAvailable(QQmlEngine* engine)
    {
        AquenSolvar::prepareEngine(*engine);
        for (const char* name : m_isFirst ? m_names : QList<const char*>()) {
            if (QMetaType::type(name) == QMetaType::UnknownType)
                m_unknown << name;
        }
        m_isFirst = false;
        engine->rootContext()->setContextProperty("unknownMetaTypes", m_unknown);
    }

private:
    const QList<const char*> m_names = {"Tasks::AquenSolvarFirmwareUpdateTask*",
                                        "AquenSolvar::Tasks::AquenSolvarFirmwareUpdateTask*",
                                        "Device::AquenSolvarDfuDevice*",
                                        "AquenSolvar::Device::AquenSolvarDfuDevice*",
                                        "Device::I_Device*",
                                        "AquenSolvar::Device::I_Device*",
                                        "Device::P_I_Device",
                                        "AquenSolvar::Device::P_I_Device"};
    QStringList m_unknown;
    bool m_isFirst = true;
};

QUICK_TEST_MAIN_WITH_SETUP(components, Setup)
#include "tst_components.moc"
