#include "umockdev/DeviceNode.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>

namespace VirtualUnit {

namespace {

using Lock = std::lock_guard<std::mutex>;

/// What the ioctl's argument points to.
template <typename T>
bool readArgument(UMockdevIoctlClient* client, T& value)
{
    UMockdevIoctlData* data =
        umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(client), 0, sizeof(T), nullptr);
    if (data == nullptr)
        return false;
    std::memcpy(&value, data->data, sizeof(T));
    umockdev_ioctl_data_unref(data);
    return true;
}

int tellCapabilities(UMockdevIoctlClient* client)
{
    const std::uint32_t capabilities = USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_BULK_CONTINUATION |
                                       USBDEVFS_CAP_NO_PACKET_SIZE_LIM |
                                       USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
    std::array<guint8, sizeof capabilities> bytes{};
    std::memcpy(bytes.data(), &capabilities, sizeof capabilities);
    UMockdevIoctlData* data = umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(client), 0,
                                                          bytes.size(), nullptr);
    if (data == nullptr)
        return EFAULT;
    umockdev_ioctl_data_update(data, 0, bytes.data(), static_cast<gint>(bytes.size()));
    umockdev_ioctl_data_unref(data);
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
    int error = 0;
    switch (umockdev_ioctl_client_get_request(client)) {
    case USBDEVFS_REAPURB:
    case USBDEVFS_REAPURBNDELAY:
        collect(client);
        return;
    case USBDEVFS_SUBMITURB:
        error = submit(client);
        break;
    case USBDEVFS_DISCARDURB:
        error = discard(client);
        break;
    case USBDEVFS_GET_CAPABILITIES:
        error = tellCapabilities(client);
        break;
    case USBDEVFS_CLAIMINTERFACE:
    case USBDEVFS_DISCONNECT_CLAIM:
        error = claim(client);
        break;
    case USBDEVFS_RELEASEINTERFACE:
        error = release(client);
        break;
    case USBDEVFS_SETINTERFACE:
        error = setInterface(client);
        break;
    case USBDEVFS_SETCONFIGURATION:
        error = setConfiguration(client);
        break;
    case USBDEVFS_RESET:
        error = reset();
        break;
    case USBDEVFS_GETDRIVER:
        error = ENODATA;
        break; // no kernel driver is bound
    case USBDEVFS_CLEAR_HALT:
        break;
    default:
        error = ENOTTY;
        break;
    }
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
}

int DeviceNode::submit(UMockdevIoctlClient* client)
{
    std::shared_ptr<Urb> urb;
    if (const int error = Urb::fetch(client, urb))
        return error;
    const Lock lock(m_mutex);
    if (m_gone)
        return ENODEV;
    if (!mayControl(*urb))
        return EBUSY;
    Answer answer = ask(urb->setup(), urb->payload());
    if (answer.delay.count() > 0)
        finishLater(answer, urb);
    else
        urb->finish(answer);
    m_urbs.push_back(std::move(urb));
    updateGate();
    return 0;
}

bool DeviceNode::mayControl(const Urb& urb) const
{
    // usbfs guards interfaces against requests from others than their owner, vendor requests apart.
    const bool toInterface = (urb.setup().bmRequestType & 0x1FU) == 1;
    return !toInterface || urb.setup().isVendor() || m_owner == nullptr || m_owner == urb.client();
}

Answer DeviceNode::ask(const SetupPacket& setup, const Bytes& data)
{
    Answer answer = m_unit->control(setup, data);
    if (answer.departure && m_onDeparture)
        m_onDeparture(answer.delay, *answer.departure);
    return answer;
}

void DeviceNode::finishLater(const Answer& answer, const std::shared_ptr<Urb>& urb)
{
    const std::weak_ptr<DeviceNode> weakNode = weak_from_this();
    const std::weak_ptr<Urb> weakUrb = urb;
    m_scheduler->after(answer.delay, [weakNode, weakUrb, answer] {
        const auto self = weakNode.lock();
        const auto pending = weakUrb.lock();
        if (!self || !pending)
            return;
        const Lock lock(self->m_mutex);
        if (!pending->isFinished())
            pending->finish(answer);
        self->updateGate();
    });
}

void DeviceNode::collect(UMockdevIoctlClient* client)
{
    std::shared_ptr<Urb> urb;
    int error = EAGAIN;
    {
        const Lock lock(m_mutex);
        const auto found =
            std::find_if(m_urbs.begin(), m_urbs.end(), [client](const auto& pending) {
                return pending->client() == client && pending->isFinished();
            });
        if (found != m_urbs.end()) {
            urb = std::move(*found);
            m_urbs.erase(found);
            updateGate();
        } else if (m_gone) {
            error = ENODEV;
        }
    }
    if (!urb) {
        umockdev_ioctl_client_complete(client, -1, error);
        return;
    }
    urb->deliver();
    UMockdevIoctlData* slot = umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(client), 0,
                                                          sizeof(void*), nullptr);
    if (slot == nullptr || umockdev_ioctl_data_set_ptr(slot, 0, urb->data()) == FALSE)
        error = EFAULT;
    else
        error = 0;
    if (slot != nullptr)
        umockdev_ioctl_data_unref(slot);
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
}

int DeviceNode::discard(UMockdevIoctlClient* client)
{
    unsigned long address = 0;
    const UMockdevIoctlData* argument = umockdev_ioctl_client_get_arg(client);
    std::memcpy(&address, argument->data, sizeof address);
    const Lock lock(m_mutex);
    for (const auto& urb : m_urbs) {
        if (urb->client() == client && urb->address() == address && !urb->isFinished()) {
            urb->fail(-ENOENT);
            updateGate();
            return 0;
        }
    }
    return EINVAL;
}

int DeviceNode::claim(UMockdevIoctlClient* client)
{
    // The argument of DISCONNECT_CLAIM begins with the interface number as well.
    unsigned interface = 0;
    if (!readArgument(client, interface))
        return EFAULT;
    const Lock lock(m_mutex);
    if (m_gone)
        return ENODEV;
    if (interface != 0)
        return ENOENT;
    if (m_owner != nullptr && m_owner != client)
        return EBUSY;
    m_owner = client;
    return 0;
}

int DeviceNode::release(UMockdevIoctlClient* client)
{
    unsigned interface = 0;
    if (!readArgument(client, interface))
        return EFAULT;
    const Lock lock(m_mutex);
    if (m_gone)
        return ENODEV;
    if (interface != 0 || m_owner != client)
        return EINVAL;
    m_owner = nullptr;
    return 0;
}

int DeviceNode::standardRequest(std::uint8_t request, std::uint16_t value, std::uint16_t index)
{
    const Lock lock(m_mutex);
    if (m_gone)
        return ENODEV;
    const std::uint8_t recipient = request == Standard::SetInterface ? 1 : 0;
    switch (ask({recipient, request, value, index, 0}, {}).kind) {
    case Answer::Kind::Stall:
        return EPIPE;
    case Answer::Kind::Silence:
        return ETIMEDOUT;
    default:
        return 0;
    }
}

int DeviceNode::setInterface(UMockdevIoctlClient* client)
{
    usbdevfs_setinterface argument{};
    if (!readArgument(client, argument))
        return EFAULT;
    if (argument.interface != 0 || argument.altsetting != 0)
        return EINVAL;
    return standardRequest(Standard::SetInterface, 0, 0);
}

int DeviceNode::setConfiguration(UMockdevIoctlClient* client)
{
    unsigned configuration = 0;
    if (!readArgument(client, configuration))
        return EFAULT;
    if (configuration > 1)
        return EINVAL;
    return standardRequest(Standard::SetConfiguration, static_cast<std::uint16_t>(configuration),
                           0);
}

int DeviceNode::reset()
{
    const Lock lock(m_mutex);
    if (m_gone)
        return ENODEV;
    m_unit->busReset();
    return 0;
}

void DeviceNode::shutDown()
{
    const Lock lock(m_mutex);
    m_gone = true;
    m_onDeparture = nullptr;
    for (const auto& urb : m_urbs) {
        if (!urb->isFinished())
            urb->fail(-ESHUTDOWN);
    }
    updateGate();
}

void DeviceNode::clientVanished(const void* client)
{
    const Lock lock(m_mutex);
    m_urbs.remove_if([client](const auto& urb) { return urb->client() == client; });
    if (m_owner == client)
        m_owner = nullptr;
    updateGate();
}

void DeviceNode::updateGate()
{
    m_pollFifo.set(std::any_of(m_urbs.begin(), m_urbs.end(),
                               [](const auto& urb) { return urb->isFinished(); }));
}

} // namespace VirtualUnit
