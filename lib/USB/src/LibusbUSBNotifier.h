// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/I_USBNotifier.h"

#include <QTimer>

#include <libusb.h>

namespace USB {

/// Notifier over libusb's hot-plug callbacks, for Linux. Does not report devices that are attached
/// when it is made. Libusb's events are handled once a second on the thread of this object, and by
/// any thread that waits for a transfer: the signals may come from each of them. A failed
/// registration is logged, and the notifier never fires. The libusb session must outlive it.
class LibusbUSBNotifier : public I_USBNotifier
{
    Q_OBJECT

public:
    explicit LibusbUSBNotifier(QObject* parent = nullptr);
    ~LibusbUSBNotifier() override;

    /// Called by libusb for each event. May run inside a transfer, so it only reads the descriptor
    /// and emits. Always returns 0, which keeps the registration.
    int hotplug_callback(libusb_device* device, int event);

public slots:
    void on_LibusbEventTimer_timeout();

private:
    QTimer m_eventTimer;
    libusb_hotplug_callback_handle m_callbackHandle = 0; // 0: not registered
};

} // namespace USB
