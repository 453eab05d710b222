// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Descriptors.h"

namespace VirtualUnit {

/// The requests that every USB device supports (USB 2.0, section 9.4), and the configuration they
/// set. Not thread-safe; the unit locks.
class StandardRequests
{
public:
    /// Both must outlive this object.
    StandardRequests(const Identity& identity, const Overrides& overrides)
        : m_identity(identity)
        , m_overrides(overrides)
    {
    }

    /// As after power-up; the host's system sets configuration 1 by itself.
    void reset() { m_configuration = 1; }

    Response handle(const SetupPacket& setup);

private:
    Bytes descriptor(const SetupPacket& setup) const;

    const Identity& m_identity;
    const Overrides& m_overrides;
    std::uint8_t m_configuration = 1;
};

} // namespace VirtualUnit
