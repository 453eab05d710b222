#include "umockdev/Urb.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <linux/usbdevice_fs.h>

namespace VirtualUnit {

namespace {

void writeInt(UMockdevIoctlData* target, std::size_t offset, int value)
{
    std::array<guint8, sizeof value> bytes{};
    std::memcpy(bytes.data(), &value, sizeof value);
    umockdev_ioctl_data_update(target, offset, bytes.data(), static_cast<gint>(bytes.size()));
}

} // namespace

int Urb::fetch(UMockdevIoctlClient* client, std::shared_ptr<Urb>& urb)
{
    std::shared_ptr<Urb> taken(new Urb);
    taken->m_client = client;
    UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
    taken->m_urb.reset(umockdev_ioctl_data_resolve(argument, 0, sizeof(usbdevfs_urb), nullptr));
    if (!taken->m_urb)
        return EFAULT;
    usbdevfs_urb header{};
    std::memcpy(&header, taken->m_urb->data, sizeof header);
    if (header.type != USBDEVFS_URB_TYPE_CONTROL)
        return ENOENT; // the units have no endpoint but the default one
    if (header.buffer_length < static_cast<int>(SetupPacket::Size))
        return EINVAL;
    const auto length = static_cast<std::size_t>(header.buffer_length);
    taken->m_buffer.reset(umockdev_ioctl_data_resolve(
        taken->m_urb.get(), offsetof(usbdevfs_urb, buffer), length, nullptr));
    if (!taken->m_buffer)
        return EFAULT;
    std::array<std::uint8_t, SetupPacket::Size> wire{};
    std::memcpy(wire.data(), taken->m_buffer->data, wire.size());
    taken->m_setup = SetupPacket::fromWire(wire);
    if (length < SetupPacket::Size + taken->m_setup.wLength)
        return EINVAL;
    if (!taken->m_setup.isIn()) {
        const guint8* begin = taken->m_buffer->data + SetupPacket::Size;
        taken->m_payload.assign(begin, begin + taken->m_setup.wLength);
    }
    urb = std::move(taken);
    return 0;
}

void Urb::finish(const Answer& answer)
{
    switch (answer.kind) {
    case Answer::Kind::Data:
        m_answer = answer.data;
        m_answer.resize(std::min<std::size_t>(m_answer.size(), m_setup.wLength));
        m_actualLength = static_cast<int>(m_answer.size());
        break;
    case Answer::Kind::Acknowledge:
        m_actualLength = static_cast<int>(m_payload.size());
        break;
    case Answer::Kind::Stall:
        m_status = -EPIPE;
        break;
    case Answer::Kind::Silence:
        return;
    }
    m_finished = true;
}

void Urb::fail(int status)
{
    m_status = status;
    m_finished = true;
}

void Urb::deliver()
{
    if (!m_answer.empty())
        umockdev_ioctl_data_update(m_buffer.get(), SetupPacket::Size, m_answer.data(),
                                   static_cast<gint>(m_answer.size()));
    writeInt(m_urb.get(), offsetof(usbdevfs_urb, status), m_status);
    writeInt(m_urb.get(), offsetof(usbdevfs_urb, actual_length), m_actualLength);
}

} // namespace VirtualUnit
