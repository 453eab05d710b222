#pragma once

#include "bus/BusHost.h"
#include "umockdev/PollFifo.h"
#include "umockdev/Urb.h"

#include <list>

namespace VirtualUnit {

/// A unit while it is plugged in, as its clients see it: the device node and the usbfs ioctls.
///
/// Locks: handleIoctl runs on the bus's thread, the rest on any. The node's lock is never held over
/// a call to the testbed, and the bus's own lock is never taken here.
class DeviceNode : public std::enable_shared_from_this<DeviceNode>
{
public:
    using OnDeparture = BusHost::OnDeparture;

    /// @p onDeparture is called, with the delay of the answer, when the unit says that it leaves;
    /// it must not call the node.
    DeviceNode(P_Unit unit, std::shared_ptr<Scheduler> scheduler, const std::string& fifo,
               OnDeparture onDeparture);

    /// Completes the client's ioctl, on the bus's thread.
    void handleIoctl(UMockdevIoctlClient* client);
    /// The client has closed the node: what it left behind is dropped.
    void clientVanished(const void* client);

    /// The unit is gone: requests in flight end with -ESHUTDOWN, new ones get ENODEV.
    void shutDown();

private:
    int submit(UMockdevIoctlClient* client);
    void collect(UMockdevIoctlClient* client);
    int discard(UMockdevIoctlClient* client);
    int claim(UMockdevIoctlClient* client);
    int release(UMockdevIoctlClient* client);
    int standardRequest(std::uint8_t request, std::uint16_t value, std::uint16_t index);
    int setInterface(UMockdevIoctlClient* client);
    int setConfiguration(UMockdevIoctlClient* client);
    int reset();

    Answer ask(const SetupPacket& setup, const Bytes& data);
    void finishLater(const Answer& answer, const std::shared_ptr<Urb>& urb);
    bool mayControl(const Urb& urb) const;
    void updateGate();

    const P_Unit m_unit;
    const std::shared_ptr<Scheduler> m_scheduler;
    std::mutex m_mutex;
    OnDeparture m_onDeparture;
    PollFifo m_pollFifo;
    std::list<std::shared_ptr<Urb>> m_urbs; ///< in order of submission
    const void* m_owner = nullptr;          ///< the client that claimed interface 0
    bool m_gone = false;
};

} // namespace VirtualUnit
