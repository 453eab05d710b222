// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/UserInterface.h"

#include "Common/BuildOS.h"
#include "Common/BuildType.h"
#include "Common/BuildVersion.h"
#include "Common/CppToQml.h"
#include "Common/FileIO.h"
#include "Common/FontHelper.h"
#include "Common/Logging/SLog.h"
#include "Common/Paths.h"
#include "Common/PrinterCompatibility.h"
#include "Common/TemporaryDirWrapper.h"
#include "USB/LibusbDeviceEnumerator.h"
#include "devices/AquenSolvarDfuDevice.h"
#include "devices/I_Device.h"
#include "qslog/QsLogHelpers.h"
#include "shell/DesktopNotification.h"
#include "shell/Help.h"
#include "shell/Notices.h"
#include "tracking/AquenSolvarFilterProxyModel.h"
#include "tracking/AquenSolvarListModel.h"
#include "tracking/AquenSolvarWatcher.h"
#include "update/AquenSolvarFirmwareUpdateTask.h"
#include "update/AquenSolvarTaskFactory.h"
#include "update/ShippedFirmware.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

// A static library's resources are linked only if these calls refer to them. The macro requires
// that they are outside of any namespace. Repeated registration is harmless.
static void initializeResources()
{
    Q_INIT_RESOURCE(AquenSolvarFonts);
    Q_INIT_RESOURCE(AquenSolvarIcons);
    Q_INIT_RESOURCE(AquenSolvarQml);
    Q_INIT_RESOURCE(UnderscoreQML);
}

namespace AquenSolvar {

namespace {

template <typename T>
void registerSingleton(const char* uri, const char* name)
{
    qmlRegisterSingletonType<T>(uri, 1, 0, name,
                                [](QQmlEngine*, QJSEngine*) -> QObject* { return new T; });
}

void registerCommonTypes()
{
    qmlRegisterUncreatableType<PrinterCompatibility>("Common", 1, 0, "PrinterCompatibility",
                                                     QString());
    registerSingleton<Common::BuildOS>("Common", "BuildOS");
    registerSingleton<Common::BuildType>("Common", "BuildType");
    registerSingleton<Common::BuildVersion>("Common", "BuildVersion");
    registerSingleton<Common::CppToQml>("Common", "CppToQml");
    registerSingleton<Common::FileIO>("Common", "FileIO");
    registerSingleton<Common::Paths>("Common", "Paths");
    registerSingleton<Common::SLog>("SLog", "SLog");
    qmlRegisterType<Common::File::TemporaryDirWrapper>("Common.File", 1, 0, "TemporaryDirWrapper");
    qmlRegisterType<Common::FontHelper>("Common", 1, 0, "FontHelper");
}

void registerUsbTypes()
{
    qmlRegisterType<USB::LibusbDeviceEnumerator>("USB", 1, 0, "LibusbDeviceEnumerator");
}

void registerApplicationTypes()
{
    qmlRegisterType<AquenSolvarWatcher>("AquenSolvar", 1, 0, "AqSolWatcher");
    registerSingleton<AquenSolvarTaskFactory>("AquenSolvar", "AquenSolvarTaskFactory");
    registerSingleton<ShippedFirmware>("AquenSolvar", "ShippedFirmware");
    registerSingleton<DesktopNotification>("AquenSolvar", "DesktopNotification");
    registerSingleton<Help>("AquenSolvar", "Help");
    registerSingleton<Notices>("AquenSolvar", "Notices");
    qmlRegisterType<AquenSolvarListModel>("AquenSolvar", 1, 0, "AquenSolvarListModel");
    qmlRegisterType<Tasks::AquenSolvarFirmwareUpdateTask>("AquenSolvar.Tasks", 1, 0,
                                                          "AquenSolvarFirmwareUpdateTask");
    qmlRegisterType<AquenSolvarFilterProxyModel>("AquenSolvar", 1, 0,
                                                 "AquenSolvarFilterProxyModel");
    qmlRegisterUncreatableType<Device::I_Device>("AquenSolvar.Device", 1, 0, "Device", QString());
}

// A value of a type whose name is not registered silently reaches QML as undefined.
void registerMetaTypes()
{
    qRegisterMetaType<Tasks::AquenSolvarFirmwareUpdateTask*>(
        "Tasks::AquenSolvarFirmwareUpdateTask *");
    qRegisterMetaType<Tasks::AquenSolvarFirmwareUpdateTask*>();
    qRegisterMetaType<Device::AquenSolvarDfuDevice*>("Device::AquenSolvarDfuDevice *");
    qRegisterMetaType<Device::AquenSolvarDfuDevice*>();
    qRegisterMetaType<Device::I_Device*>("Device::I_Device *");
    qRegisterMetaType<Device::I_Device*>();
    qRegisterMetaType<Device::P_I_Device>("Device::P_I_Device");
    qRegisterMetaType<Device::P_I_Device>("AquenSolvar::Device::P_I_Device");
}

template <typename T>
T* singleton(QQmlEngine& engine, const char* name)
{
    return engine.singletonInstance<T*>(qmlTypeId("AquenSolvar", 1, 0, name));
}

bool startStateMachine(QObject* root)
{
    auto* window = qobject_cast<QQuickWindow*>(root);
    if (window == nullptr)
        return false;
    auto* machine = window->findChild<QObject*>(QStringLiteral("AquenSolvarUpdaterStateMachine"));
    return machine != nullptr && QMetaObject::invokeMethod(machine, "start", Qt::QueuedConnection);
}

} // namespace

void prepareEngine(QQmlEngine& engine)
{
    initializeResources();
    engine.addImportPath(QStringLiteral("qrc:///lib"));
    registerCommonTypes();
    registerUsbTypes();
    registerApplicationTypes();
    registerMetaTypes();
    QsLog::registerQmlLogging(engine);
    engine.addImportPath(QStringLiteral("qrc:///vendor-UnderscoreQML"));
}

bool loadUserInterface(QQmlApplicationEngine& engine, InstanceGuard* guard)
{
    prepareEngine(engine);
    auto* notices = singleton<Notices>(engine, "Notices");
    notices->followFirmware(singleton<ShippedFirmware>(engine, "ShippedFirmware"));
    if (guard != nullptr)
        notices->followGuard(guard);
    engine.load(QUrl(QStringLiteral("qrc:/qml/main.qml")));
    return !engine.rootObjects().isEmpty() && startStateMachine(engine.rootObjects().constFirst());
}

} // namespace AquenSolvar
