#include "unit/Fault.h"

#include "unit/RequestName.h"

#include <algorithm>
#include <stdexcept>

namespace VirtualUnit {

Fault Fault::at(unsigned number, Action action, unsigned value)
{
    return {action, value, {}, number, 1};
}

Fault Fault::on(const std::string& name, Action action, unsigned value, unsigned first)
{
    const std::vector<std::string>& names = requestNames();
    if (std::find(names.begin(), names.end(), name) == names.end())
        throw std::invalid_argument("no request goes by the name " + name);
    const auto matches = [name](const SetupPacket& setup, const Bytes& data) {
        return matchesName(name, setup, data);
    };
    return {action, value, matches, first, 1};
}

} // namespace VirtualUnit
