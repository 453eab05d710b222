// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/BusHost.h"
#include "bus/Scheduler.h"
#include "umockdev/PollFifo.h"
#include "umockdev/Urb.h"

#include <list>

namespace VirtualUnit {

/// A unit while it is plugged in, as its clients see it: the device node and the usbfs ioctls.
///
/// handleIoctl runs on the bus's thread, the rest on any. The node's lock is never held over a call
/// to the testbed, and the bus's own lock is never taken here.
class DeviceNode : public std::enable_shared_from_this<DeviceNode>
{
public:
    using OnDeparture = BusHost::OnDeparture;

    /// @p onDeparture is called, with the delay of the response, when the unit announces that it
    /// leaves; it must not call the node. Late responses are given from @p scheduler.
    DeviceNode(P_Unit unit, std::shared_ptr<Scheduler> scheduler, const std::string& fifo,
               OnDeparture onDeparture);

    /// Completes the client's ioctl, on the bus's thread.
    void handleIoctl(UMockdevIoctlClient* client);
    /// The client has closed the node: its requests and its claim are dropped.
    void clientVanished(const void* client);

    /// The unit is gone: pending requests end with -ESHUTDOWN, new ones get ENODEV.
    void shutDown();

private:
    // All with the lock held, but for handle() and completeLater(). Results are errno.
    int handle(UMockdevIoctlClient* client, gulong request);
    int submit(UMockdevIoctlClient* client);
    int reap(UMockdevIoctlClient* client);
    int discard(UMockdevIoctlClient* client);
    int claim(UMockdevIoctlClient* client, unsigned interface);
    int release(UMockdevIoctlClient* client, unsigned interface);
    int setInterface(UMockdevIoctlClient* client);
    int standardRequest(std::uint8_t request, unsigned value);

    Response ask(const SetupPacket& setup, const Bytes& data);
    void completeLater(const Response& response, const std::shared_ptr<Urb>& urb);
    bool mayControl(const Urb& urb) const;
    void updateFifo();

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
