// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/I_USBNotifier.h"

#include <QAbstractNativeEventFilter>
#include <QWindow>

namespace USB {

/// Notifier over the device-change messages (WM_DEVICECHANGE) that Windows sends to the application
/// window. The registration lasts as long as the window. Main thread.
class WindowsUSBNotifier : public I_USBNotifier, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Installs itself as a native event filter of the application and registers the window of that
    /// native handle. A failed registration is logged, and the notifier never fires.
    WindowsUSBNotifier(QObject* parent, WId windowHandle);

    /// Reports arrivals and removals of USB devices. Never consumes a message.
    bool nativeEventFilter(const QByteArray& eventType, void* message, long* result) override;

    /// As parseWindowsDeviceName(), from a NUL-terminated UTF-16 name.
    static bool parseDeviceName(const wchar_t* name, quint16& vid, quint16& pid);

private:
    void registerUSBNotification(WId windowHandle);
};

} // namespace USB
