// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/Urb.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/usbdevice_fs.h>

namespace VirtualUnit {

namespace {

void writeInt(UMockdevIoctlData* target, std::size_t offset, int value)
{
    umockdev_ioctl_data_update(target, offset, reinterpret_cast<guint8*>(&value), sizeof value);
}

} // namespace

P_IoctlData resolveArgument(UMockdevIoctlClient* client, std::size_t size)
{
    return P_IoctlData(
        umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(client), 0, size, nullptr));
}

int Urb::fetch(UMockdevIoctlClient* client, std::shared_ptr<Urb>& urb)
{
    std::shared_ptr<Urb> taken(new Urb);
    taken->m_client = client;
    taken->m_urb = resolveArgument(client, sizeof(usbdevfs_urb));
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
    taken->m_setup = SetupPacket::fromWire(taken->m_buffer->data);
    if (length < SetupPacket::Size + taken->m_setup.wLength)
        return EINVAL;
    if (!taken->m_setup.isIn()) {
        const guint8* begin = taken->m_buffer->data + SetupPacket::Size;
        taken->m_payload.assign(begin, begin + taken->m_setup.wLength);
    }
    urb = std::move(taken);
    return 0;
}

void Urb::complete(const Response& response)
{
    if (response.kind == Response::Kind::Silence)
        return;
    if (response.kind == Response::Kind::Stall)
        m_status = -EPIPE;
    m_received = response.data;
    m_received.resize(std::min<std::size_t>(m_received.size(), m_setup.wLength));
    m_complete = true;
}

void Urb::fail(int status)
{
    m_status = status;
    m_complete = true;
}

void Urb::deliver()
{
    if (!m_received.empty())
        umockdev_ioctl_data_update(m_buffer.get(), SetupPacket::Size, m_received.data(),
                                   static_cast<gint>(m_received.size()));
    const Bytes& moved = m_setup.isIn() ? m_received : m_payload;
    writeInt(m_urb.get(), offsetof(usbdevfs_urb, status), m_status);
    writeInt(m_urb.get(), offsetof(usbdevfs_urb, actual_length),
             m_status == 0 ? static_cast<int>(moved.size()) : 0);
}

} // namespace VirtualUnit
