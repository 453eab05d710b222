// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/Application.h"

#include "unit/FirmwareImage.h"
#include "unit/Protocol.h"

#include <algorithm>

namespace VirtualUnit {

namespace {

constexpr std::uint8_t readInterface = 0xC1;
constexpr std::uint8_t writeInterface = 0x41;
constexpr std::size_t serialNameAt = 16;

Bytes padded(const std::string& text, std::size_t size)
{
    Bytes bytes(size, 0);
    std::copy_n(text.begin(), std::min(size, text.size()), bytes.begin());
    return bytes;
}

Bytes configurationPage(const Overrides& overrides)
{
    Bytes page(overrides.schemaVersion == 4 ? 64 : 74, 0xA5);
    const Bytes name = padded(overrides.serialName, MaximumSerialNameLength);
    std::copy(name.begin(), name.end(), page.begin() + serialNameAt);
    return page;
}

} // namespace

Response Application::handle(const SetupPacket& setup) const
{
    if (setup.wValue != 0 || setup.wIndex != 0)
        return Response::stall();
    if (setup.bmRequestType == readInterface)
        return read(setup.bRequest);
    if (setup.bmRequestType != writeInterface || setup.bRequest != Vendor::DropToBootloader ||
        setup.wLength != 0)
        return Response::stall();
    Response response = Response::acknowledge();
    response.departure = Departure{m_overrides.leaveDelay, m_overrides.returnDelay};
    return response;
}

Response Application::read(std::uint8_t request) const
{
    const std::string version = readImage(m_flash.application()).version;
    switch (request) {
    case Vendor::FirmwareVersion:
        return Response::withData(padded(version, 8));
    case Vendor::FirmwareRevision:
        return Response::withData(padded("virtual-" + version, 64));
    case Vendor::ConfigurationPage:
        return Response::withData(configurationPage(m_overrides));
    case Vendor::SchemaVersion: {
        Bytes bytes(4);
        writeNumber(bytes.data(), bytes.size(), m_overrides.schemaVersion);
        return Response::withData(std::move(bytes));
    }
    default:
        return Response::stall();
    }
}

} // namespace VirtualUnit
