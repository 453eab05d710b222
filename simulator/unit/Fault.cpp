// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/Fault.h"

#include "unit/RequestName.h"

#include <stdexcept>

namespace VirtualUnit {

Fault Fault::on(const std::string& name, Action action, unsigned value, unsigned first)
{
    if (!isRequestName(name))
        throw std::invalid_argument("unknown request: " + name);
    return {action, value, name, first, 1, 0, {}};
}

bool Fault::strikes(const SetupPacket& setup, const Bytes& data)
{
    if (!matchesName(request, setup, data))
        return false;
    ++counted;
    const bool happens = counted >= first && (times == Forever || counted - first < times);
    if (happens && onStrike)
        onStrike();
    return happens;
}

} // namespace VirtualUnit
