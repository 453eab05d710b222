// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/StandardRequests.h"

#include "unit/Protocol.h"

namespace VirtualUnit {

Response StandardRequests::handle(const SetupPacket& setup)
{
    switch (setup.bRequest) {
    case Standard::GetStatus:
        return Response::withData({1, 0}); // self-powered
    case Standard::GetDescriptor: {
        Bytes bytes = descriptor(setup);
        return bytes.empty() ? Response::stall() : Response::withData(std::move(bytes));
    }
    case Standard::GetConfiguration:
        return Response::withData({m_configuration});
    case Standard::SetConfiguration:
        if (setup.wValue > 1)
            return Response::stall();
        m_configuration = static_cast<std::uint8_t>(setup.wValue);
        return Response::acknowledge();
    case Standard::GetInterface:
        return setup.wIndex == 0 ? Response::withData({0}) : Response::stall();
    case Standard::SetInterface:
        return setup.wIndex == 0 && setup.wValue == 0 ? Response::acknowledge() : Response::stall();
    default:
        return Response::stall();
    }
}

Bytes StandardRequests::descriptor(const SetupPacket& setup) const
{
    const auto index = static_cast<std::uint8_t>(setup.wValue & 0xFFU);
    switch (setup.wValue >> 8) {
    case Standard::DeviceDescriptor:
        return Descriptors::device(m_identity);
    case Standard::ConfigurationDescriptor:
        return index == 0 ? Descriptors::configuration(m_identity, m_overrides) : Bytes();
    case Standard::StringDescriptor:
        return Descriptors::string(index, m_identity, m_overrides);
    default:
        return {};
    }
}

} // namespace VirtualUnit
