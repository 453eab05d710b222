// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/Bus.h"

namespace VirtualUnit {

/// A USB bus of this process and the children it starts: while it lives they see it, and it alone,
/// below /sys and /dev, so that the real libusb finds the units. No rights are needed.
///
/// The process has to run with umockdev's library preloaded (see available()). One bus at a time.
/// Limits: hosts can miss an arrival or an absence shorter than 100 ms. When it is destroyed,
/// clients that have a unit open cost 200 ms.
class VirtualBus : public Bus
{
public:
    /// Throws std::runtime_error when the library is not preloaded.
    VirtualBus();

    /// The host alone. Throws as the constructor does.
    static std::unique_ptr<BusHost> makeHost();

    /// Whether the library is preloaded into this process.
    static bool available();
};

} // namespace VirtualUnit
