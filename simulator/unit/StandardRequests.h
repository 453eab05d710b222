#pragma once

#include "unit/Descriptors.h"

namespace VirtualUnit {

/// The requests that every USB device answers (USB 2.0, section 9.4), and the configuration they
/// choose. Not thread-safe; the unit locks.
class StandardRequests
{
public:
    /// As after power-up; the host's system chooses configuration 1 by itself.
    void reset() { m_configuration = 1; }

    /// @p layout is the interface string of the bootloader unless the overrides replace it.
    Answer handle(const SetupPacket& setup, const Identity& identity, const Overrides& overrides,
                  const std::string& layout);

private:
    static Answer descriptor(const SetupPacket& setup, const Identity& identity,
                             const Overrides& overrides, const std::string& layout);

    std::uint8_t m_configuration = 1;
};

} // namespace VirtualUnit
