// The functions of libusb that belong to the session, the listing of the bus and hot-plug. They are
// linked with the USB library's other classes; no fuzz target gets as far as calling one.
#include "Harness.h"

#include <libusb.h>

using Fuzz::require;

namespace {

int refuse()
{
    require(false, "no session, listing or hot-plug notice is asked for");
    return LIBUSB_ERROR_NOT_SUPPORTED;
}

} // namespace

extern "C" {

int LIBUSB_CALL libusb_init(libusb_context**)
{
    return refuse();
}

void LIBUSB_CALL libusb_exit(libusb_context*)
{
    refuse();
}

ssize_t LIBUSB_CALL libusb_get_device_list(libusb_context*, libusb_device***)
{
    return refuse();
}

void LIBUSB_CALL libusb_free_device_list(libusb_device**, int)
{
    refuse();
}

uint8_t LIBUSB_CALL libusb_get_device_address(libusb_device*)
{
    refuse();
    return 0;
}

int LIBUSB_CALL libusb_hotplug_register_callback(libusb_context*, int, int, int, int, int,
                                                 libusb_hotplug_callback_fn, void*,
                                                 libusb_hotplug_callback_handle*)
{
    return refuse();
}

void LIBUSB_CALL libusb_hotplug_deregister_callback(libusb_context*, libusb_hotplug_callback_handle)
{
    refuse();
}

void LIBUSB_CALL libusb_lock_events(libusb_context*)
{
    refuse();
}

void LIBUSB_CALL libusb_unlock_events(libusb_context*)
{
    refuse();
}

} // extern "C"
