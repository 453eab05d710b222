// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/LibusbUSBNotifier.h"

#include "qslog/Log.h"

namespace USB {

namespace {

constexpr int eventIntervalMs = 1000;

int LIBUSB_CALL forwardHotplugEvent(libusb_context*, libusb_device* device,
                                    libusb_hotplug_event event, void* notifier)
{
    return static_cast<LibusbUSBNotifier*>(notifier)->hotplug_callback(device, int(event));
}

} // namespace

I_USBNotifier* I_USBNotifier::create(QObject* parent, QObject*)
{
    return new LibusbUSBNotifier(parent);
}

LibusbUSBNotifier::LibusbUSBNotifier(QObject* parent)
    : I_USBNotifier(parent)
{
    const int events =
        int(LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED) | int(LIBUSB_HOTPLUG_EVENT_DEVICE_LEFT);
    const int result = libusb_hotplug_register_callback(
        nullptr, libusb_hotplug_event(events), LIBUSB_HOTPLUG_NO_FLAGS, LIBUSB_HOTPLUG_MATCH_ANY,
        LIBUSB_HOTPLUG_MATCH_ANY, LIBUSB_HOTPLUG_MATCH_ANY, &forwardHotplugEvent, this,
        &m_callbackHandle);
    if (result != LIBUSB_SUCCESS) {
        m_callbackHandle = 0;
        QLOG_ERROR() << "Error registering the libusb hotplug callback:" << result;
    } else {
        QLOG_INFO() << "Registered the libusb hotplug callback";
    }
    connect(&m_eventTimer, &QTimer::timeout, this, &LibusbUSBNotifier::on_LibusbEventTimer_timeout);
    m_eventTimer.setInterval(eventIntervalMs);
    m_eventTimer.setSingleShot(false);
    m_eventTimer.start();
}

LibusbUSBNotifier::~LibusbUSBNotifier()
{
    if (m_callbackHandle == 0) {
        QLOG_INFO() << "Not deregistering the libusb hotplug callback because there is nothing to "
                       "deregister";
        return;
    }
    QLOG_INFO() << "Deregistering the libusb hotplug callback";
    libusb_hotplug_deregister_callback(nullptr, m_callbackHandle);
    // A callback may still be running on another thread. It holds the event lock.
    libusb_lock_events(nullptr);
    libusb_unlock_events(nullptr);
}

void LibusbUSBNotifier::on_LibusbEventTimer_timeout()
{
    timeval noWait = {0, 0};
    const int result = libusb_handle_events_timeout_completed(nullptr, &noWait, nullptr);
    if (result < 0 && result != LIBUSB_ERROR_INTERRUPTED)
        QLOG_WARN() << "Could not handle USB events:" << libusb_error_name(result);
}

int LibusbUSBNotifier::hotplug_callback(libusb_device* device, int event)
{
    libusb_device_descriptor descriptor = {};
    if (libusb_get_device_descriptor(device, &descriptor) < 0) {
        QLOG_ERROR() << "Failed to get the libusb device descriptor for device";
        return 0;
    }
    switch (event) {
    case LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED:
        QLOG_INFO() << "Hotplug event: device arrived" << descriptor.idVendor
                    << descriptor.idProduct;
        emit USBAttachmentNotification(descriptor.idVendor, descriptor.idProduct);
        return 0;
    case LIBUSB_HOTPLUG_EVENT_DEVICE_LEFT:
        QLOG_INFO() << "Hotplug event: device left" << descriptor.idVendor << descriptor.idProduct;
        emit USBRemovalNotification(descriptor.idVendor, descriptor.idProduct);
        return 0;
    default:
        QLOG_ERROR() << "Invalid libusb hotplug event:" << event;
        return 0;
    }
}

} // namespace USB
