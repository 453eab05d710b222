// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/Bus.h"

namespace VirtualUnit {

/// A USB bus of this process and the children that it starts: while it exists, they see this bus
/// only below /sys and /dev, so that the real libusb finds the units. Needs no rights.
///
/// The process has to run with umockdev's library preloaded. One bus at a time. Hosts can miss an
/// arrival or an absence shorter than 100 ms. Destruction takes 200 ms if clients have a unit open.
class VirtualBus : public Bus
{
public:
    /// Throws std::runtime_error when the library is not preloaded, and when no folder can be made
    /// below TMPDIR.
    VirtualBus();

    /// The host alone. Throws as the constructor does.
    static std::unique_ptr<BusHost> makeHost();

    /// Restarts the program with the library preloaded (then this does not return) unless it is.
    /// Throws std::runtime_error when it cannot be loaded; going on would let the program and its
    /// children reach the machine's real bus.
    static void ensurePreload(char** arguments);
};

} // namespace VirtualUnit
