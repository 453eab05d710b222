// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/DeviceNode.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>

namespace VirtualUnit {

namespace {

using Lock = std::lock_guard<std::mutex>;

/// The number that the ioctl's argument begins with: an interface or a configuration. If it cannot
/// be read, one that no unit has.
unsigned firstNumber(UMockdevIoctlClient* client)
{
    unsigned value = ~0U;
    if (const P_IoctlData data = resolveArgument(client, sizeof value))
        std::memcpy(&value, data->data, sizeof value);
    return value;
}

int reportCapabilities(UMockdevIoctlClient* client)
{
    std::uint32_t capabilities = USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_BULK_CONTINUATION |
                                 USBDEVFS_CAP_NO_PACKET_SIZE_LIM |
                                 USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
    const P_IoctlData data = resolveArgument(client, sizeof capabilities);
    if (!data)
        return EFAULT;
    umockdev_ioctl_data_update(data.get(), 0, reinterpret_cast<guint8*>(&capabilities),
                               sizeof capabilities);
    return 0;
}

} // namespace

DeviceNode::DeviceNode(P_Unit unit, std::shared_ptr<Scheduler> scheduler, const std::string& fifo,
                       OnDeparture onDeparture)
    : m_unit(std::move(unit))
    , m_scheduler(std::move(scheduler))
    , m_onDeparture(std::move(onDeparture))
    , m_pollFifo(fifo)
{
}

void DeviceNode::handleIoctl(UMockdevIoctlClient* client)
{
    const int error = handle(client, umockdev_ioctl_client_get_request(client));
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
}

int DeviceNode::handle(UMockdevIoctlClient* client, gulong request)
{
    const Lock lock(m_mutex);
    if (request == USBDEVFS_REAPURB || request == USBDEVFS_REAPURBNDELAY)
        return reap(client);
    if (m_gone) // the kernel allows nothing but to reap then
        return ENODEV;
    switch (request) {
    case USBDEVFS_SUBMITURB:
        return submit(client);
    case USBDEVFS_DISCARDURB:
        return discard(client);
    case USBDEVFS_GET_CAPABILITIES:
        return reportCapabilities(client);
    case USBDEVFS_CLAIMINTERFACE:
    case USBDEVFS_DISCONNECT_CLAIM:
        return claim(client, firstNumber(client));
    case USBDEVFS_RELEASEINTERFACE:
        return release(client, firstNumber(client));
    case USBDEVFS_SETINTERFACE:
        return setInterface(client);
    case USBDEVFS_SETCONFIGURATION:
        return standardRequest(Standard::SetConfiguration, firstNumber(client));
    case USBDEVFS_RESET:
        m_unit->busReset();
        return 0;
    case USBDEVFS_GETDRIVER:
        return ENODATA; // no kernel driver is bound
    case USBDEVFS_CLEAR_HALT:
        return 0;
    default:
        return ENOTTY;
    }
}

int DeviceNode::submit(UMockdevIoctlClient* client)
{
    std::shared_ptr<Urb> urb;
    if (const int error = Urb::fetch(client, urb))
        return error;
    if (!mayControl(*urb))
        return EBUSY;
    const Response response = ask(urb->setup(), urb->payload());
    if (response.delay.count() > 0)
        completeLater(response, urb);
    else
        urb->complete(response);
    m_urbs.push_back(std::move(urb));
    updateFifo();
    return 0;
}

bool DeviceNode::mayControl(const Urb& urb) const
{
    // usbfs accepts requests to an interface from its owner only, vendor requests excepted.
    const bool toInterface = (urb.setup().bmRequestType & 0x1FU) == 1;
    return !toInterface || urb.setup().type() == SetupPacket::Vendor || m_owner == nullptr ||
           m_owner == urb.client();
}

Response DeviceNode::ask(const SetupPacket& setup, const Bytes& data)
{
    Response response = m_unit->control(setup, data);
    if (response.departure && m_onDeparture)
        m_onDeparture(response.delay, *response.departure);
    return response;
}

void DeviceNode::completeLater(const Response& response, const std::shared_ptr<Urb>& urb)
{
    const auto complete = [weakNode = weak_from_this(), weakUrb = std::weak_ptr(urb), response] {
        const auto self = weakNode.lock();
        const auto pending = weakUrb.lock();
        if (!self || !pending)
            return;
        const Lock lock(self->m_mutex);
        if (!pending->isComplete())
            pending->complete(response);
        self->updateFifo();
    };
    m_scheduler->after(response.delay, complete);
}

int DeviceNode::reap(UMockdevIoctlClient* client)
{
    const auto found = std::find_if(m_urbs.begin(), m_urbs.end(), [client](const auto& known) {
        return known->client() == client && known->isComplete();
    });
    if (found == m_urbs.end())
        return m_gone ? ENODEV : EAGAIN;
    const std::shared_ptr<Urb> urb = std::move(*found);
    m_urbs.erase(found);
    updateFifo();
    urb->deliver();
    const P_IoctlData slot = resolveArgument(client, sizeof(void*));
    return slot && umockdev_ioctl_data_set_ptr(slot.get(), 0, urb->data()) != FALSE ? 0 : EFAULT;
}

int DeviceNode::discard(UMockdevIoctlClient* client)
{
    unsigned long address = 0;
    std::memcpy(&address, umockdev_ioctl_client_get_arg(client)->data, sizeof address);
    for (const auto& urb : m_urbs) {
        if (urb->client() == client && urb->address() == address && !urb->isComplete()) {
            urb->fail(-ENOENT);
            updateFifo();
            return 0;
        }
    }
    return EINVAL;
}

int DeviceNode::claim(UMockdevIoctlClient* client, unsigned interface)
{
    if (interface != 0)
        return ENOENT;
    if (m_owner != nullptr && m_owner != client)
        return EBUSY;
    m_owner = client;
    return 0;
}

int DeviceNode::release(UMockdevIoctlClient* client, unsigned interface)
{
    if (interface != 0 || m_owner != client)
        return EINVAL;
    m_owner = nullptr;
    return 0;
}

int DeviceNode::setInterface(UMockdevIoctlClient* client)
{
    usbdevfs_setinterface argument{};
    const P_IoctlData data = resolveArgument(client, sizeof argument);
    if (!data)
        return EFAULT;
    std::memcpy(&argument, data->data, sizeof argument);
    if (argument.interface != 0)
        return EINVAL;
    return standardRequest(Standard::SetInterface, argument.altsetting);
}

int DeviceNode::standardRequest(std::uint8_t request, unsigned value)
{
    if (value > (request == Standard::SetConfiguration ? 1 : 0))
        return EINVAL;
    const std::uint8_t recipient = request == Standard::SetInterface ? 1 : 0;
    switch (ask({recipient, request, static_cast<std::uint16_t>(value), 0, 0}, {}).kind) {
    case Response::Kind::Stall:
        return EPIPE;
    case Response::Kind::Silence:
        return ETIMEDOUT;
    default:
        return 0;
    }
}

void DeviceNode::shutDown()
{
    const Lock lock(m_mutex);
    m_gone = true;
    m_onDeparture = nullptr;
    for (const auto& urb : m_urbs) {
        if (!urb->isComplete())
            urb->fail(-ESHUTDOWN);
    }
    updateFifo();
}

void DeviceNode::clientVanished(const void* client)
{
    const Lock lock(m_mutex);
    m_urbs.remove_if([client](const auto& urb) { return urb->client() == client; });
    if (m_owner == client)
        m_owner = nullptr;
    updateFifo();
}

void DeviceNode::updateFifo()
{
    m_pollFifo.setWriteable(std::any_of(m_urbs.begin(), m_urbs.end(),
                                        [](const auto& urb) { return urb->isComplete(); }));
}

} // namespace VirtualUnit
