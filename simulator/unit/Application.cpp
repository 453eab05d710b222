#include "unit/Application.h"

#include "unit/FirmwareImage.h"
#include "unit/Protocol.h"

#include <algorithm>

namespace VirtualUnit {

namespace {

constexpr std::uint8_t readInterface = 0xC1;
constexpr std::uint8_t writeInterface = 0x41;
constexpr std::size_t serialNameAt = 16;
constexpr std::size_t serialNameField = 32;

Bytes padded(const std::string& text, std::size_t size)
{
    Bytes bytes(size, 0);
    std::copy_n(text.begin(), std::min(size, text.size()), bytes.begin());
    return bytes;
}

Bytes configurationPage(const Overrides& overrides)
{
    const std::size_t size = overrides.schemaVersion == 4 ? 64 : 74;
    Bytes page(size, 0xA5);
    const Bytes name = padded(overrides.serialName, serialNameField);
    std::copy(name.begin(), name.end(), page.begin() + serialNameAt);
    return page;
}

Bytes littleEndian(std::uint32_t value)
{
    Bytes bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    return bytes;
}

} // namespace

Answer Application::handle(const SetupPacket& setup, const Overrides& overrides) const
{
    if (setup.wValue != 0 || setup.wIndex != 0)
        return Answer::stall();
    if (setup.bmRequestType == readInterface)
        return read(setup.bRequest, overrides);
    if (setup.bmRequestType != writeInterface || setup.bRequest != Vendor::DropToBootloader ||
        setup.wLength != 0)
        return Answer::stall();
    Answer answer = Answer::acknowledge();
    answer.departure = Departure{overrides.leaveDelay, overrides.returnDelay};
    return answer;
}

Answer Application::read(std::uint8_t request, const Overrides& overrides) const
{
    switch (request) {
    case Vendor::FirmwareVersion:
        return Answer::withData(overrides.versionAnswer ? *overrides.versionAnswer
                                                        : padded(imageVersion(), 8));
    case Vendor::FirmwareRevision:
        return Answer::withData(overrides.revisionAnswer ? *overrides.revisionAnswer
                                                         : padded("virtual-" + imageVersion(), 64));
    case Vendor::ConfigurationPage:
        return Answer::withData(overrides.configurationPage.value_or(configurationPage(overrides)));
    case Vendor::SchemaVersion:
        return Answer::withData(
            overrides.schemaAnswer.value_or(littleEndian(overrides.schemaVersion)));
    default:
        return Answer::stall();
    }
}

std::string Application::imageVersion() const
{
    const auto image = readImage(m_flash.application());
    return image ? image->version : std::string();
}

} // namespace VirtualUnit
