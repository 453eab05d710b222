// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/BusHost.h"
#include "umockdev/IoctlServer.h"

#include <map>

namespace VirtualUnit {

/// The mocked /sys and /dev with one root hub, to which units are added. Not thread-safe; the bus
/// locks.
class Testbed : public BusHost
{
public:
    static constexpr std::uint8_t BusNumber = 1;

    Testbed();
    /// Clients that still have a node open get ENODEV from then on.
    ~Testbed() override;

    unsigned ports() const override { return 50; } // a client can have that many nodes open
    void add(unsigned port, const P_Unit& unit, const OnDeparture& onDeparture) override;
    void remove(unsigned port) override;

private:
    /// What belongs to a plugged-in unit.
    struct Attachment
    {
        std::uint8_t device = 0;
        std::shared_ptr<DeviceNode> node;
        GObjectPtr<UMockdevIoctlBase> handler;
    };

    std::uint8_t nextDeviceNumber();
    void addFromString(const std::string& description);

    GObjectPtr<UMockdevTestbed> m_testbed;
    std::string m_root;
    std::map<unsigned, Attachment> m_attached; ///< by port
    std::uint8_t m_lastDevice = 1;             ///< the root hub
    std::shared_ptr<Scheduler> m_scheduler = std::make_shared<Scheduler>();
    P_ClientCount m_clients = std::make_shared<std::atomic<int>>(0);
};

} // namespace VirtualUnit
