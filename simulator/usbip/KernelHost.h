// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "usbip/UsbipConnection.h"

#include <map>
#include <string>

namespace VirtualUnit {

/// The USB stack of this machine's Linux kernel: the driver vhci_hcd shows each unit at a port of
/// its virtual host controller, to every program of the machine. Needs root and the module
/// vhci-hcd.
class KernelHost : public BusHost
{
public:
    /// Throws std::runtime_error when the driver is not loaded.
    KernelHost();

    /// Those of the first controller for units of full speed.
    unsigned ports() const override { return static_cast<unsigned>(m_ports.size()); }
    void add(unsigned port, const P_Unit& unit, const OnDeparture& onDeparture) override;
    void remove(unsigned port) override;

private:
    bool waitUntilFree(unsigned port) const;
    void attach(unsigned port, int socket) const;

    std::vector<unsigned> m_ports; ///< the driver's numbers of the ports
    std::map<unsigned, std::unique_ptr<UsbipConnection>> m_attached;
};

} // namespace VirtualUnit
