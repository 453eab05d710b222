#pragma once

#include "unit/SetupPacket.h"

#include <algorithm>

namespace Fuzz {

/// Takes an input apart from front to back. Past its end there are zeros and empty runs.
class ByteReader
{
public:
    ByteReader(const std::uint8_t* data, std::size_t size)
        : m_next(data)
        , m_end(data + size)
    {
    }

    bool atEnd() const { return m_next == m_end; }

    std::uint8_t byte() { return atEnd() ? std::uint8_t{0} : *m_next++; }

    /// At most that many bytes.
    VirtualUnit::Bytes bytes(std::size_t count)
    {
        const auto taken = std::min(count, static_cast<std::size_t>(m_end - m_next));
        const VirtualUnit::Bytes run(m_next, m_next + taken);
        m_next += taken;
        return run;
    }

    /// Bytes with their number, one byte, in front.
    VirtualUnit::Bytes counted() { return bytes(byte()); }

private:
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};

} // namespace Fuzz
