#include "unit/StandardRequests.h"

#include "unit/Protocol.h"

namespace VirtualUnit {

Answer StandardRequests::handle(const SetupPacket& setup, const Identity& identity,
                                const Overrides& overrides, const std::string& layout)
{
    switch (setup.bRequest) {
    case Standard::GetStatus:
        return Answer::withData({1, 0}); // self-powered
    case Standard::GetDescriptor:
        return descriptor(setup, identity, overrides, layout);
    case Standard::GetConfiguration:
        return Answer::withData({m_configuration});
    case Standard::SetConfiguration:
        if (setup.wValue > 1)
            return Answer::stall();
        m_configuration = static_cast<std::uint8_t>(setup.wValue);
        return Answer::acknowledge();
    case Standard::GetInterface:
        return setup.wIndex == 0 ? Answer::withData({0}) : Answer::stall();
    case Standard::SetInterface:
        return setup.wIndex == 0 && setup.wValue == 0 ? Answer::acknowledge() : Answer::stall();
    default:
        return Answer::stall();
    }
}

Answer StandardRequests::descriptor(const SetupPacket& setup, const Identity& identity,
                                    const Overrides& overrides, const std::string& layout)
{
    const auto index = static_cast<std::uint8_t>(setup.wValue & 0xFFU);
    Bytes bytes;
    switch (setup.wValue >> 8) {
    case Standard::DeviceDescriptor:
        bytes = Descriptors::device(identity);
        break;
    case Standard::ConfigurationDescriptor:
        if (index == 0)
            bytes = overrides.configurationAnswer.value_or(
                Descriptors::configuration(identity, overrides));
        break;
    case Standard::StringDescriptor:
        bytes = Descriptors::string(index, identity, overrides, layout);
        break;
    default:
        break;
    }
    return bytes.empty() ? Answer::stall() : Answer::withData(std::move(bytes));
}

} // namespace VirtualUnit
