// SPDX-License-Identifier: LicenseRef-Proprietary
#include "libusb/Host.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

using namespace VirtualUnit;

namespace {

/// Sends a request to a unit. With the host's lock held.
int send(const libusb_device& device, const SetupPacket& setup, const Bytes& data,
         Response& response)
{
    if (!device.present)
        return LIBUSB_ERROR_NO_DEVICE;
    response = device.unit->control(setup, data);
    if (response.departure)
        device.onDeparture(response.delay, *response.departure);
    return 0;
}

/// Sends a request without a transfer. One that gets no response times out at once.
int sendNow(const libusb_device& device, const SetupPacket& setup, Response& response)
{
    const Host::Lock lock(host().mutex);
    if (const int error = send(device, setup, {}, response))
        return error;
    if (response.kind == Response::Kind::Silence)
        return LIBUSB_ERROR_TIMEOUT;
    return response.kind == Response::Kind::Stall ? LIBUSB_ERROR_PIPE : 0;
}

} // namespace

API(const char*) libusb_error_name(int code)
{
    static constexpr const char* names[] = {"LIBUSB_SUCCESS",
                                            "LIBUSB_ERROR_IO",
                                            "LIBUSB_ERROR_INVALID_PARAM",
                                            "LIBUSB_ERROR_ACCESS",
                                            "LIBUSB_ERROR_NO_DEVICE",
                                            "LIBUSB_ERROR_NOT_FOUND",
                                            "LIBUSB_ERROR_BUSY",
                                            "LIBUSB_ERROR_TIMEOUT",
                                            "LIBUSB_ERROR_OVERFLOW",
                                            "LIBUSB_ERROR_PIPE",
                                            "LIBUSB_ERROR_INTERRUPTED",
                                            "LIBUSB_ERROR_NO_MEM",
                                            "LIBUSB_ERROR_NOT_SUPPORTED"};
    return code > 0 || code < LIBUSB_ERROR_NOT_SUPPORTED ? "LIBUSB_ERROR_OTHER" : names[-code];
}

API(const libusb_version*) libusb_get_version()
{
    static constexpr libusb_version version{1, 0, 26, 0, "", "virtual units"};
    return &version;
}

API(ssize_t) libusb_get_device_list(libusb_context*, libusb_device*** list)
{
    const Host::Lock lock(host().mutex);
    libusb_device** next = *list = new libusb_device*[host().devices.size() + 1]();
    for (libusb_device& device : host().devices) {
        if (device.present)
            *next++ = &device;
    }
    return next - *list;
}

API(void) libusb_free_device_list(libusb_device** list, int)
{
    delete[] list;
}

API(void) libusb_unref_device(libusb_device*) {}

API(std::uint8_t) libusb_get_bus_number(libusb_device*)
{
    return 1;
}

API(std::uint8_t) libusb_get_device_address(libusb_device* device)
{
    return device->address;
}

API(int) libusb_get_port_numbers(libusb_device* device, std::uint8_t* ports, int)
{
    ports[0] = device->port;
    return 1;
}

API(int) libusb_get_device_descriptor(libusb_device* device, libusb_device_descriptor* copy)
{
    std::memcpy(copy, device->descriptors.data(), LIBUSB_DT_DEVICE_SIZE);
    return 0;
}

API(int) libusb_get_active_config_descriptor(libusb_device* device, libusb_config_descriptor** out)
{
    // A unit has one interface with one setting and no endpoint. "extra" stays empty.
    struct Configuration
    {
        libusb_config_descriptor descriptor;
        libusb_interface_descriptor setting;
        libusb_interface interface;
    };
    auto* copy = static_cast<Configuration*>(std::calloc(1, sizeof(Configuration)));
    // The structures begin as on the wire, little endian.
    const std::uint8_t* bytes = &device->descriptors[LIBUSB_DT_DEVICE_SIZE];
    std::memcpy(&copy->descriptor, bytes, LIBUSB_DT_CONFIG_SIZE);
    std::memcpy(&copy->setting, bytes + LIBUSB_DT_CONFIG_SIZE, LIBUSB_DT_INTERFACE_SIZE);
    copy->interface = {&copy->setting, 1};
    copy->descriptor.interface = &copy->interface;
    *out = &copy->descriptor;
    return 0;
}

API(void) libusb_free_config_descriptor(libusb_config_descriptor* descriptor)
{
    std::free(descriptor);
}

API(int) libusb_open(libusb_device* device, libusb_device_handle** handle)
{
    const Host::Lock lock(host().mutex);
    if (!device->present)
        return LIBUSB_ERROR_NO_DEVICE;
    if (const int error = device->unit->openError())
        return error;
    *handle = new libusb_device_handle{*device};
    return 0;
}

API(void) libusb_close(libusb_device_handle* handle)
{
    libusb_release_interface(handle, 0);
    delete handle;
}

API(int) libusb_claim_interface(libusb_device_handle* handle, int interface)
{
    const Host::Lock lock(host().mutex);
    libusb_device& device = handle->device;
    if (!device.present)
        return LIBUSB_ERROR_NO_DEVICE;
    if (interface != 0)
        return LIBUSB_ERROR_NOT_FOUND;
    if (device.owner != nullptr && device.owner != handle)
        return LIBUSB_ERROR_BUSY;
    device.owner = handle;
    return 0;
}

API(int) libusb_release_interface(libusb_device_handle* handle, int interface)
{
    const Host::Lock lock(host().mutex);
    if (interface != 0 || handle->device.owner != handle)
        return LIBUSB_ERROR_NOT_FOUND;
    handle->device.owner = nullptr;
    return handle->device.present ? 0 : LIBUSB_ERROR_NO_DEVICE;
}

API(int) libusb_get_configuration(libusb_device_handle*, int* configuration)
{
    *configuration = 1; // the only one, which the system has set
    return 0;
}

API(int) libusb_set_configuration(libusb_device_handle*, int)
{
    return LIBUSB_ERROR_NOT_SUPPORTED;
}

API(libusb_transfer*) libusb_alloc_transfer(int)
{
    return new libusb_transfer{}; // a control transfer, which has no packets
}

API(void) libusb_free_transfer(libusb_transfer* transfer)
{
    delete transfer;
}

API(int) libusb_submit_transfer(libusb_transfer* transfer)
{
    const SetupPacket setup = SetupPacket::fromWire(transfer->buffer);
    std::uint8_t* data = transfer->buffer + SetupPacket::Size;
    if (setup.wLength > 4096) // the limit of Linux and of WinUSB
        return LIBUSB_ERROR_INVALID_PARAM;
    const Host::Lock lock(host().mutex);
    Response response;
    const Bytes sent = setup.isIn() ? Bytes() : Bytes(data, data + setup.wLength);
    if (const int error = send(transfer->dev_handle->device, setup, sent, response))
        return error;
    std::copy(response.data.begin(), response.data.end(), data);
    transfer->actual_length = setup.isIn() ? int(response.data.size()) : setup.wLength;
    constexpr auto never = Clock::time_point::max();
    const auto now = Clock::now();
    const auto end = transfer->timeout == 0 ? never : now + milliseconds(transfer->timeout);
    const auto due = response.kind == Response::Kind::Silence ? never : now + response.delay;
    const bool stalled = response.kind == Response::Kind::Stall;
    transfer->status = stalled ? LIBUSB_TRANSFER_STALL : LIBUSB_TRANSFER_COMPLETED;
    if (end < due)
        transfer->status = LIBUSB_TRANSFER_TIMED_OUT;
    host().transfers[transfer] = std::min(due, end);
    host().changed.notify_all();
    return 0;
}

API(int) libusb_cancel_transfer(libusb_transfer* transfer)
{
    const Host::Lock lock(host().mutex);
    const auto found = host().transfers.find(transfer);
    if (found == host().transfers.end())
        return LIBUSB_ERROR_NOT_FOUND;
    host().end(*found, LIBUSB_TRANSFER_CANCELLED);
    return 0;
}

// cppcheck-suppress constParameter; the type is libusb's
API(int) libusb_handle_events_timeout_completed(libusb_context*, timeval* timeout, int* completed)
{
    auto& transfers = host().transfers;
    const auto deadline = Clock::now() + std::chrono::seconds(timeout->tv_sec) +
                          std::chrono::microseconds(timeout->tv_usec);
    Host::Lock lock(host().mutex);
    while (completed == nullptr || *completed == 0) {
        const auto next = std::min_element(
            transfers.begin(), transfers.end(),
            [](const auto& left, const auto& right) { return left.second < right.second; });
        const bool any = next != transfers.end();
        if (any && next->second <= Clock::now()) {
            libusb_transfer* ended = next->first;
            transfers.erase(next);
            ended->callback(ended);
            host().changed.notify_all();
            break;
        }
        if (Clock::now() >= deadline)
            break;
        host().changed.wait_until(lock, any ? std::min(deadline, next->second) : deadline);
    }
    return 0;
}

API(int) libusb_handle_events_timeout(libusb_context* context, timeval* timeout)
{
    return libusb_handle_events_timeout_completed(context, timeout, nullptr);
}

API(int) libusb_set_interface_alt_setting(libusb_device_handle* handle, int number, int setting)
{
    Response none;
    const SetupPacket setup{LIBUSB_RECIPIENT_INTERFACE, LIBUSB_REQUEST_SET_INTERFACE,
                            std::uint16_t(setting), std::uint16_t(number), 0};
    return sendNow(handle->device, setup, none);
}

/// In the units' one language.
API(int)
libusb_get_string_descriptor_ascii(libusb_device_handle* handle, std::uint8_t index,
                                   unsigned char* data, int length)
{
    Response response;
    const SetupPacket setup{LIBUSB_ENDPOINT_IN, LIBUSB_REQUEST_GET_DESCRIPTOR,
                            std::uint16_t(LIBUSB_DT_STRING << 8 | index), 0x409, 255};
    if (const int error = sendNow(handle->device, setup, response))
        return error;
    const Bytes& bytes = response.data;
    int written = 0;
    for (std::size_t at = 2; at + 1 < bytes.size() && written < length - 1; at += 2)
        data[written++] = bytes[at] < 0x80 && bytes[at + 1] == 0 ? bytes[at] : '?';
    data[written] = 0;
    return bytes.size() < 2 ? LIBUSB_ERROR_IO : written;
}
