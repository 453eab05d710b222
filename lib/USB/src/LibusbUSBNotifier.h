#pragma once

#include "USB/I_USBNotifier.h"

#include <QTimer>

#include <libusb.h>

namespace USB {

/// Notifier over libusb's hot-plug callbacks, for Linux. Devices that are attached already when it
/// is made are not reported. libusb's events are handled once a second on the thread of this
/// object, and by whichever thread waits for a transfer: the signals come from any of them.
class LibusbUSBNotifier : public I_USBNotifier
{
    Q_OBJECT

public:
    explicit LibusbUSBNotifier(QObject* parent = nullptr);
    ~LibusbUSBNotifier() override;

    /// Called for each event by libusb. Only reads the descriptor and emits: it may run inside a
    /// transfer. Always answers 0, which keeps the registration.
    int hotplug_callback(libusb_device* device, int event);

public slots:
    void on_LibusbEventTimer_timeout();

private:
    QTimer m_eventTimer;
    libusb_hotplug_callback_handle m_callbackHandle = 0;
};

} // namespace USB
