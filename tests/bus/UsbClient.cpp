#include "UsbClient.h"

#include <stdexcept>

namespace {

constexpr std::uint16_t vendor = 0x16D0;

} // namespace

UsbClient::UsbClient()
{
    if (const int error = libusb_init(&m_context))
        throw std::runtime_error(libusb_error_name(error));
}

UsbClient::~UsbClient()
{
    close();
    libusb_exit(m_context);
}

int UsbClient::count(std::uint16_t product) const
{
    libusb_device** list = nullptr;
    const ssize_t size = libusb_get_device_list(m_context, &list);
    int found = 0;
    for (ssize_t i = 0; i < size; ++i) {
        libusb_device_descriptor descriptor{};
        libusb_get_device_descriptor(list[i], &descriptor);
        found += descriptor.idVendor == vendor && descriptor.idProduct == product ? 1 : 0;
    }
    libusb_free_device_list(list, 1);
    return found;
}

int UsbClient::open(std::uint16_t product)
{
    close();
    m_handle = libusb_open_device_with_vid_pid(m_context, vendor, product);
    if (m_handle == nullptr)
        return LIBUSB_ERROR_NOT_FOUND;
    return libusb_claim_interface(m_handle, 0);
}

void UsbClient::close()
{
    if (m_handle != nullptr)
        libusb_close(m_handle);
    m_handle = nullptr;
}

int UsbClient::deviceNumber() const
{
    return libusb_get_device_address(libusb_get_device(m_handle));
}

int UsbClient::control(std::uint8_t type, std::uint8_t request, std::uint16_t value,
                       VirtualUnit::Bytes& data, unsigned timeout) const
{
    const int result = libusb_control_transfer(m_handle, type, request, value, 0, data.data(),
                                               static_cast<std::uint16_t>(data.size()), timeout);
    if ((type & 0x80U) != 0)
        data.resize(result > 0 ? static_cast<std::size_t>(result) : 0);
    return result;
}
