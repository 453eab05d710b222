#include "FakeLibusb.h"

#include "Harness.h"
#include "HostConfiguration.h"

#include <algorithm>
#include <array>
#include <cstdlib>

using Fuzz::FakeUnit;
using Fuzz::require;
using VirtualUnit::Bytes;
using VirtualUnit::SetupPacket;

struct libusb_device
{
    int references = 0;
};

struct libusb_device_handle
{
    int claimed = -1;
    libusb_transfer* inFlight = nullptr;
    Fuzz::ControlEnd end;
    bool cancelled = false;
    bool lockBroken = false;
};

namespace {

// usbfs takes control data of one memory page at most.
constexpr int largestControlData = 4096;

struct Bus
{
    FakeUnit* unit = nullptr;
    libusb_device device;
    libusb_device_handle* opened = nullptr;
    int configurations = 0;
};

Bus& bus()
{
    static Bus only;
    return only;
}

FakeUnit& unit()
{
    require(bus().unit != nullptr, "no call is made without a unit");
    return *bus().unit;
}

void requireOpen(const libusb_device_handle* handle)
{
    require(handle != nullptr && handle == bus().opened, "the handle is one that is open");
}

// Ends the transfer and tells its owner, as one round of event handling does.
void complete(libusb_device_handle& handle)
{
    libusb_transfer* transfer = handle.inFlight;
    const bool in = (transfer->buffer[0] & LIBUSB_ENDPOINT_IN) != 0;
    const int room = transfer->length - int(LIBUSB_CONTROL_SETUP_SIZE);
    transfer->status = handle.end.status;
    if (handle.cancelled && handle.end.silent)
        transfer->status = LIBUSB_TRANSFER_CANCELLED;
    transfer->actual_length = 0;
    if (transfer->status == LIBUSB_TRANSFER_COMPLETED) {
        transfer->actual_length = in ? qMin(room, int(handle.end.data.size())) : room;
        if (in)
            std::copy_n(handle.end.data.begin(), transfer->actual_length,
                        transfer->buffer + LIBUSB_CONTROL_SETUP_SIZE);
    }
    handle.inFlight = nullptr;
    transfer->callback(transfer);
}

} // namespace

namespace Fuzz {

FakeBus::FakeBus(FakeUnit& unit)
{
    require(bus().unit == nullptr, "there is one bus");
    bus().unit = &unit;
}

FakeBus::~FakeBus()
{
    const bool closed = bus().opened == nullptr;
    require(closed || bus().opened->lockBroken, "the unit is closed at the end");
    delete bus().opened;
    require(bus().device.references == 0, "each reference to the unit is given back");
    require(bus().configurations == 0, "each configuration descriptor is given back");
    bus() = Bus();
}

USB::P_LibUsbDevice FakeBus::record() const
{
    auto* record = new USB::LibUsbDevice;
    record->device = &bus().device;
    ++bus().device.references;
    record->descriptor.idVendor = 0x16D0;
    record->descriptor.idProduct = unit().productId();
    return USB::P_LibUsbDevice(record, &USB::releaseLibUsbDevice);
}

} // namespace Fuzz

extern "C" {

void LIBUSB_CALL libusb_unref_device(libusb_device* device)
{
    require(device->references-- > 0, "no reference is given back twice");
}

uint8_t LIBUSB_CALL libusb_get_bus_number(libusb_device*)
{
    return 1;
}

int LIBUSB_CALL libusb_get_port_numbers(libusb_device*, uint8_t* ports, int room)
{
    if (room < 2)
        return LIBUSB_ERROR_OVERFLOW;
    ports[0] = 4;
    ports[1] = 2;
    return 2;
}

const char* LIBUSB_CALL libusb_error_name(int)
{
    return "LIBUSB_ERROR_FUZZED";
}

int LIBUSB_CALL libusb_get_device_descriptor(libusb_device*, libusb_device_descriptor* out)
{
    const int result = unit().result(FakeUnit::Call::DeviceDescriptor);
    if (result < 0)
        return result;
    *out = {};
    out->idVendor = 0x16D0;
    out->idProduct = unit().productId();
    return 0;
}

int LIBUSB_CALL libusb_open(libusb_device* device, libusb_device_handle** out)
{
    require(device == &bus().device && bus().opened == nullptr, "the unit is opened once");
    const int result = unit().result(FakeUnit::Call::Open);
    if (result < 0)
        return result;
    *out = bus().opened = new libusb_device_handle;
    return 0;
}

void LIBUSB_CALL libusb_close(libusb_device_handle* handle)
{
    requireOpen(handle);
    require(handle->inFlight == nullptr, "no transfer is in flight at the close");
    require(!handle->lockBroken, "no handle is closed whose lock is broken");
    bus().opened = nullptr;
    delete handle;
}

int LIBUSB_CALL libusb_get_configuration(libusb_device_handle* handle, int* out)
{
    requireOpen(handle);
    *out = unit().activeConfiguration();
    return unit().result(FakeUnit::Call::GetConfiguration);
}

int LIBUSB_CALL libusb_set_configuration(libusb_device_handle* handle, int)
{
    requireOpen(handle);
    if (handle->claimed >= 0)
        return LIBUSB_ERROR_BUSY;
    return unit().result(FakeUnit::Call::SetConfiguration);
}

int LIBUSB_CALL libusb_claim_interface(libusb_device_handle* handle, int number)
{
    requireOpen(handle);
    require(handle->claimed < 0, "an interface is claimed once");
    const int result = unit().result(FakeUnit::Call::Claim);
    if (result >= 0)
        handle->claimed = number;
    return result;
}

int LIBUSB_CALL libusb_release_interface(libusb_device_handle* handle, int number)
{
    requireOpen(handle);
    if (handle->claimed != number)
        return LIBUSB_ERROR_NOT_FOUND;
    handle->claimed = -1;
    return unit().result(FakeUnit::Call::Release);
}

int LIBUSB_CALL libusb_set_interface_alt_setting(libusb_device_handle* handle, int number, int)
{
    requireOpen(handle);
    if (handle->claimed != number)
        return LIBUSB_ERROR_NOT_FOUND;
    const int result = unit().result(FakeUnit::Call::AlternateSetting);
    // libusb 1.0.26 unlocks what it has not locked when the device has left; its close then aborts.
    handle->lockBroken = result == LIBUSB_ERROR_NO_DEVICE;
    return result;
}

int LIBUSB_CALL libusb_get_active_config_descriptor(libusb_device*, libusb_config_descriptor** out)
{
    const int result = unit().result(FakeUnit::Call::ConfigurationDescriptor);
    if (result < 0)
        return result;
    ++bus().configurations;
    *out = Fuzz::makeHostConfiguration(unit().configuration());
    return 0;
}

void LIBUSB_CALL libusb_free_config_descriptor(libusb_config_descriptor* configuration)
{
    // As libusb: null is none.
    if (configuration == nullptr)
        return;
    --bus().configurations;
    Fuzz::freeHostConfiguration(configuration);
}

int LIBUSB_CALL libusb_get_string_descriptor_ascii(libusb_device_handle* handle, uint8_t index,
                                                   unsigned char* out, int room)
{
    requireOpen(handle);
    if (index == 0)
        return LIBUSB_ERROR_INVALID_PARAM;
    std::string text;
    const int result = unit().readString(index, text);
    if (result < 0)
        return result;
    // A descriptor has 255 bytes at most: 126 characters in UTF-16, "?" for each outside ASCII.
    const int length = qMin(qMin(int(text.size()), 126), room - 1);
    for (int i = 0; i < length; ++i) {
        const auto character = static_cast<unsigned char>(text[std::size_t(i)]);
        out[i] = character < 0x80 ? character : '?';
    }
    out[length] = 0;
    return length;
}

libusb_transfer* LIBUSB_CALL libusb_alloc_transfer(int)
{
    return static_cast<libusb_transfer*>(std::calloc(1, sizeof(libusb_transfer)));
}

void LIBUSB_CALL libusb_free_transfer(libusb_transfer* transfer)
{
    require(bus().opened == nullptr || bus().opened->inFlight != transfer,
            "no transfer is freed in flight");
    std::free(transfer);
}

int LIBUSB_CALL libusb_submit_transfer(libusb_transfer* transfer)
{
    libusb_device_handle* handle = transfer->dev_handle;
    requireOpen(handle);
    require(handle->inFlight == nullptr, "one transfer is in flight at a time");
    std::array<std::uint8_t, SetupPacket::Size> wire{};
    std::copy_n(transfer->buffer, wire.size(), wire.begin());
    const SetupPacket setup = SetupPacket::fromWire(wire);
    require(transfer->length == int(setup.wLength + SetupPacket::Size),
            "the buffer holds what the setup packet says");
    if (setup.wLength > largestControlData)
        return LIBUSB_ERROR_INVALID_PARAM;
    Bytes sent;
    if (!setup.isIn())
        sent.assign(transfer->buffer + wire.size(), transfer->buffer + transfer->length);
    handle->end = unit().control(setup, sent);
    if (handle->end.submission < 0)
        return handle->end.submission;
    handle->inFlight = transfer;
    handle->cancelled = false;
    return 0;
}

int LIBUSB_CALL libusb_cancel_transfer(libusb_transfer* transfer)
{
    libusb_device_handle* handle = transfer->dev_handle;
    requireOpen(handle);
    if (handle->inFlight != transfer)
        return LIBUSB_ERROR_NOT_FOUND;
    handle->cancelled = true;
    return 0;
}

int LIBUSB_CALL libusb_handle_events_timeout_completed(libusb_context*, timeval*, int*)
{
    libusb_device_handle* handle = bus().opened;
    require(handle != nullptr && handle->inFlight != nullptr,
            "an end is waited for while a transfer is in flight");
    if (handle->end.events < 0) {
        const int error = handle->end.events;
        handle->end.events = 0;
        return error;
    }
    if (!handle->end.silent || handle->cancelled)
        complete(*handle);
    return 0;
}

int LIBUSB_CALL libusb_handle_events_timeout(libusb_context*, timeval*)
{
    return 0; // the event thread of asynchronous transfers is never started here
}

} // extern "C"
