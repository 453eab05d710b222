#pragma once

#include "USB/I_USBNotifier.h"

#include <QAbstractNativeEventFilter>
#include <QWindow>

namespace USB {

/// Notifier over the device-change messages that Windows sends to the application window. The
/// registration lives as long as the window. Main thread.
class WindowsUSBNotifier : public I_USBNotifier, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Installs itself as a native event filter of the application and registers the window of that
    /// native handle. When the registration fails, that is logged and the notifier never fires.
    WindowsUSBNotifier(QObject* parent, WId windowHandle);

    /// Looks for arrivals and removals of USB devices; never consumes a message.
    bool nativeEventFilter(const QByteArray& eventType, void* message, long* result) override;

    /// The ids in a NUL-terminated UTF-16 device interface name; see parseWindowsDeviceName().
    static bool parseDeviceName(const wchar_t* name, quint16& vid, quint16& pid);

private:
    void registerUSBNotification(WId windowHandle);
};

} // namespace USB
