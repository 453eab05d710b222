#include "unit/FaultPlan.h"

#include <algorithm>

namespace VirtualUnit {

void FaultPlan::add(Fault fault)
{
    m_pending.push_back({std::move(fault), 0});
}

void FaultPlan::restartCounting()
{
    for (Pending& pending : m_pending)
        pending.seen = 0;
}

std::vector<Fault> FaultPlan::due(const SetupPacket& setup, const Bytes& data)
{
    std::vector<Fault> hits;
    for (Pending& pending : m_pending) {
        const Fault& fault = pending.fault;
        if (fault.matches && !fault.matches(setup, data))
            continue;
        ++pending.seen;
        const bool begun = pending.seen >= fault.first;
        if (begun && (fault.times == Fault::Forever || pending.seen - fault.first < fault.times))
            hits.push_back(fault);
    }
    return hits;
}

} // namespace VirtualUnit
