// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/WindowsUSBNotifier.h"

#include "USB/WindowsDeviceName.h"
#include "qslog/Log.h"

#include <QCoreApplication>

#include <cstddef>
#include <cwchar>
#include <string>
#include <windows.h>

#include <dbt.h>

namespace USB {

namespace {

// GUID_DEVINTERFACE_USB_DEVICE
constexpr GUID usbDeviceInterface = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

// Any process can send the message: its name may lack the NUL.
std::wstring nameIn(const DEV_BROADCAST_HDR& header)
{
    constexpr std::size_t nameOffset = offsetof(DEV_BROADCAST_DEVICEINTERFACE_W, dbcc_name);
    if (header.dbch_size < nameOffset)
        return {};
    const auto& device = reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W&>(header);
    return {device.dbcc_name,
            wcsnlen(device.dbcc_name, (header.dbch_size - nameOffset) / sizeof(wchar_t))};
}

} // namespace

I_USBNotifier* I_USBNotifier::create(QObject* parent, QObject* window)
{
    auto* nativeWindow = qobject_cast<QWindow*>(window);
    if (nativeWindow == nullptr)
        return new WindowsUSBNotifier(parent, 0);
    // Asked for the handle of a window that the system refuses to create, Qt crashes.
    nativeWindow->create();
    return new WindowsUSBNotifier(parent,
                                  nativeWindow->handle() != nullptr ? nativeWindow->winId() : 0);
}

WindowsUSBNotifier::WindowsUSBNotifier(QObject* parent, WId windowHandle)
    : I_USBNotifier(parent)
{
    QCoreApplication::instance()->installNativeEventFilter(this);
    registerUSBNotification(windowHandle);
}

void WindowsUSBNotifier::registerUSBNotification(WId windowHandle)
{
    DEV_BROADCAST_DEVICEINTERFACE_W filter = {};
    filter.dbcc_size = sizeof filter;
    filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    filter.dbcc_classguid = usbDeviceInterface;
    const HDEVNOTIFY registration = RegisterDeviceNotificationW(
        reinterpret_cast<HWND>(windowHandle), &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
    if (registration == nullptr)
        QLOG_ERROR() << "Could not register for device notification";
}

bool WindowsUSBNotifier::nativeEventFilter(const QByteArray&, void* message, long*)
{
    const auto* nativeMessage = static_cast<const MSG*>(message);
    if (nativeMessage->message != WM_DEVICECHANGE)
        return false;
    const WPARAM event = nativeMessage->wParam;
    if (event != DBT_DEVICEARRIVAL && event != DBT_DEVICEREMOVECOMPLETE)
        return false;
    const auto* header = reinterpret_cast<const DEV_BROADCAST_HDR*>(nativeMessage->lParam);
    if (header == nullptr || header->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE)
        return false;
    quint16 vid = 0;
    quint16 pid = 0;
    if (!parseDeviceName(nameIn(*header).c_str(), vid, pid))
        return false;
    if (event == DBT_DEVICEARRIVAL)
        emit USBAttachmentNotification(vid, pid);
    else
        emit USBRemovalNotification(vid, pid);
    return false;
}

bool WindowsUSBNotifier::parseDeviceName(const wchar_t* name, quint16& vid, quint16& pid)
{
    return parseWindowsDeviceName(QString::fromWCharArray(name), vid, pid);
}

} // namespace USB
