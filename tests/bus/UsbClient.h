#pragma once

#include "unit/SetupPacket.h"

#include <libusb.h>
#include <memory>

/// A plain client of libusb, for looking at the virtual bus as any program does.
class UsbClient
{
public:
    UsbClient();
    UsbClient(const UsbClient&) = delete;
    UsbClient& operator=(const UsbClient&) = delete;
    ~UsbClient();

    libusb_context* context() const { return m_context; }

    /// How many devices with the units' vendor id and that product id libusb lists.
    int count(std::uint16_t product) const;

    /// Opens the first device of that product and claims interface 0. A libusb error code.
    int open(std::uint16_t product);
    void close();
    libusb_device_handle* handle() const { return m_handle; }
    int deviceNumber() const;

    /// A control transfer. Gives the libusb error code or the count, and in @p data what was read.
    int control(std::uint8_t type, std::uint8_t request, std::uint16_t value,
                VirtualUnit::Bytes& data, unsigned timeout = 1000) const;

private:
    libusb_context* m_context = nullptr;
    libusb_device_handle* m_handle = nullptr;
};
