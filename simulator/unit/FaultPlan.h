#pragma once

#include "unit/Fault.h"

#include <vector>

namespace VirtualUnit {

/// The faults that a unit has before it, each with its own count. Not thread-safe; the unit locks.
class FaultPlan
{
public:
    void add(Fault fault);
    void clear() { m_pending.clear(); }

    /// Makes the next request the first one for every fault.
    void restartCounting();

    /// Counts the request and gives the faults that hit it, in the order in which they were added.
    std::vector<Fault> due(const SetupPacket& setup, const Bytes& data);

private:
    struct Pending
    {
        Fault fault;
        unsigned seen = 0;
    };
    std::vector<Pending> m_pending;
};

} // namespace VirtualUnit
