#include "Fault.h"

#include "RequestName.h"

namespace VirtualUnit {

Fault Fault::at(unsigned number, Action action, unsigned value)
{
    return {action, value, {}, number, 1};
}

Fault Fault::on(const std::string& name, Action action, unsigned value, unsigned first)
{
    const auto matches = [name](const SetupPacket& setup, const Bytes& data) {
        return matchesName(name, setup, data);
    };
    return {action, value, matches, first, 1};
}

} // namespace VirtualUnit
