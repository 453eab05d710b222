// SPDX-License-Identifier: LicenseRef-Proprietary
#include "libusb/Host.h"

using namespace VirtualUnit;

void Host::notify(libusb_device& device, bool arrived)
{
    const Lock lock(mutex);
    if (onHotplug != nullptr)
        onHotplug(nullptr, &device,
                  arrived ? LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED : LIBUSB_HOTPLUG_EVENT_DEVICE_LEFT,
                  hotplugData);
}

/// One callback, of all events; it stays until it is deregistered, whatever it returns.
API(int)
libusb_hotplug_register_callback(libusb_context*, int, int, int, int, int,
                                 libusb_hotplug_callback_fn callback, void* data,
                                 libusb_hotplug_callback_handle* handle)
{
    const Host::Lock lock(host().mutex);
    host().onHotplug = callback;
    host().hotplugData = data;
    *handle = 1;
    return 0;
}

/// Waits for a callback that runs, so that there is no need to lock the events.
API(void) libusb_hotplug_deregister_callback(libusb_context*, libusb_hotplug_callback_handle)
{
    const Host::Lock lock(host().mutex);
    host().onHotplug = nullptr;
}

API(void) libusb_lock_events(libusb_context*) {}

API(void) libusb_unlock_events(libusb_context*) {}
