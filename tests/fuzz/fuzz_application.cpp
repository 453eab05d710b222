// The answers of a unit's application firmware to the requests that load it.
#include "ByteReader.h"
#include "FakeLibusb.h"
#include "Harness.h"
#include "LogInspector.h"
#include "devices/AquenSolvarDevice.h"
#include "unit/Protocol.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

using namespace AquenSolvar::Device;
using namespace Fuzz;
using VirtualUnit::Bytes;
using VirtualUnit::SetupPacket;

namespace {

// Answers each read with the next bytes of the input, short at its end.
class OddlyAnsweringUnit : public FakeUnit
{
public:
    OddlyAnsweringUnit(const std::uint8_t* data, std::size_t size)
        : m_input(data, size)
    {
        const std::uint8_t choice = m_input.byte();
        m_product = (choice & 1) != 0 ? 0x0C08 : 0x0C07;
        m_failing = (choice >> 1) % 8;
    }

    quint16 productId() const override { return m_product; }
    int result(Call) override { return 0; }
    Bytes configuration() override { return {9, 2, 9, 0, 0, 1, 0, 0xC0, 50}; }
    int readString(std::uint8_t, std::string&) override { return LIBUSB_ERROR_PIPE; }
    ControlEnd control(const SetupPacket& setup, const Bytes&) override
    {
        ControlEnd end;
        if (++m_requests == m_failing)
            end.status = LIBUSB_TRANSFER_STALL;
        else if (setup.isIn())
            end.data = m_input.bytes(setup.wLength);
        if (setup.bRequest == VirtualUnit::Vendor::FirmwareVersion && end.status == 0)
            version = end.data;
        return end;
    }

    std::optional<Bytes> version;

private:
    ByteReader m_input;
    quint16 m_product = 0;
    int m_failing = 0;
    int m_requests = 0;
};

// The stated order of versions, over plain C strings.
bool olderThan131(const std::string& text)
{
    int parts[3] = {};
    std::size_t from = 0;
    for (int& part : parts) {
        const std::size_t dot = text.find('.', from);
        if (dot == std::string::npos && &part != &parts[2])
            return true;
        part = std::atoi(text.substr(from, dot - from).c_str());
        from = dot + 1;
    }
    constexpr int current[] = {1, 3, 1};
    return std::lexicographical_compare(parts, parts + 3, current, current + 3);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    inspectLog();
    OddlyAnsweringUnit unit(data, size);
    const FakeBus bus(unit);
    AquenSolvarDevice device(bus.record());
    require(device.deviceType() ==
                (unit.productId() == 0x0C07 ? I_Device::AQUEN : I_Device::SOLVAR),
            "the kind follows the product id alone");
    require(device.serialName().size() <= 32, "a serial name has 32 bytes at most");
    require(!device.serialName().contains(QChar(0)), "a serial name ends at the first NUL");
    const std::string version = device.firmwareVersion().toStdString();
    require(version.size() <= 8 && version.find_first_not_of("0123456789.") == std::string::npos,
            "a version is digits and dots");
    if (unit.version) {
        const std::string sent(unit.version->begin(), unit.version->end());
        require(sent.compare(0, version.size(), version) == 0, "a version is what was sent");
        require(device.needsUpdate() == olderThan131(version), "versions are ordered by number");
    } else {
        require(version.empty() && !device.needsUpdate(), "what was not read is not told");
    }
    require(device.firmwareRevision().size() <= 64, "a revision has 64 bytes at most");
    device.dropToBootloader();
    return 0;
}
