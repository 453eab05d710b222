#pragma once

#include "DeviceNode.h"

namespace VirtualUnit {

/// The mock /sys and /dev with one root hub, and the way a unit is put in and taken out. Not
/// thread-safe; the bus locks.
class Testbed
{
public:
    static constexpr std::uint8_t BusNumber = 1;

    struct Place
    {
        unsigned port = 0;
        std::uint8_t device = 0;
    };

    /// What belongs to a unit that is plugged in.
    struct Attachment
    {
        std::shared_ptr<DeviceNode> node;
        GObjectPtr<UMockdevIoctlBase> handler;
    };

    Testbed();
    Testbed(const Testbed&) = delete;
    Testbed& operator=(const Testbed&) = delete;
    /// Clients that still have a node open are told for ever that the unit is gone.
    ~Testbed();

    /// Adds the unit and announces it. Throws std::runtime_error and leaves nothing behind.
    Attachment add(const Place& place, const P_Unit& unit,
                   const std::shared_ptr<Scheduler>& scheduler,
                   const DeviceNode::OnDeparture& onDeparture);

    /// Announces that the unit is gone and removes it.
    void remove(const Place& place, Attachment attachment);

private:
    void addFromString(const std::string& description);

    GObjectPtr<UMockdevTestbed> m_testbed;
    std::string m_root;
    std::shared_ptr<ClientCount> m_clients = std::make_shared<ClientCount>();
};

} // namespace VirtualUnit
