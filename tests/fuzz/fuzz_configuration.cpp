// The configuration of a unit in its bootloader: as the system parsed it and as the unit sends it.
#include "ByteReader.h"
#include "FakeLibusb.h"
#include "Harness.h"
#include "USB/USBException.h"
#include "dfu/DfuDevice.h"
#include "unit/Protocol.h"

using namespace AquenSolvar::Device;
using namespace Fuzz;
using VirtualUnit::Bytes;
using VirtualUnit::SetupPacket;

namespace {

constexpr std::size_t answerSize = 4096;
constexpr int segmentsOfASetting = 2;

// A sound bootloader but for its configuration descriptor, which is the input.
class OddlyConfiguredUnit : public FakeUnit
{
public:
    explicit OddlyConfiguredUnit(Bytes configuration)
        : m_configuration(std::move(configuration))
    {
    }

    quint16 productId() const override { return 0x0C05; }
    int result(Call) override { return 0; }
    Bytes configuration() override { return m_configuration; }
    int readString(std::uint8_t, std::string& text) override
    {
        ++stringsRead;
        text = "@Internal Flash  /0x08000000/07*002Ka,121*002Kg";
        return 0;
    }
    ControlEnd control(const SetupPacket& setup, const Bytes&) override
    {
        ControlEnd end;
        if (setup.isStandard()) {
            require(setup.bRequest == VirtualUnit::Standard::GetDescriptor &&
                        setup.wValue == 0x0200 && setup.wLength == answerSize,
                    "of the standard requests, only the configuration is asked for");
            end.data = m_configuration;
        } else {
            require(setup.bRequest == VirtualUnit::Dfu::GetStatus && setup.wLength == 6,
                    "of the class requests, only the status is asked for");
            end.data = {0, 0, 0, 0, 2, 0};
        }
        return end;
    }

    int stringsRead = 0;

private:
    Bytes m_configuration;
};

int widened(std::uint8_t low, std::uint8_t high)
{
    return int(std::int8_t(low)) | int(std::uint32_t(int(std::int8_t(high))) << 8);
}

// What the functional descriptor is worth: the last nine bytes of the stated length.
void checkFunctional(const Bytes& sent, const DfuDevice& device)
{
    Bytes answer = sent;
    answer.resize(answerSize);
    const int stated = widened(answer[2], answer[3]);
    if (stated < 9) {
        require(device.transferSize() == 0 && !device.downloadCapable(),
                "without a functional descriptor there is no transfer size");
        return;
    }
    const std::size_t end = std::min(std::size_t(stated), answerSize);
    const std::uint8_t* last = &answer[end - 9];
    require(device.transferSize() == quint16(widened(last[5], last[6])) &&
                device.detachTimeout() == quint16(widened(last[3], last[4])) &&
                device.downloadCapable() == ((last[2] & 1) != 0) &&
                device.uploadCapable() == ((last[2] & 2) != 0) &&
                device.manifestationTolerant() == ((last[2] & 4) != 0),
            "the fields are those of the last nine bytes");
}

// Walks over all that the wrappers show, as a program would.
int countSettings(const USB::USBConfigDescriptor& configuration)
{
    int settings = 0;
    for (const USB::USBInterface& interface : configuration.interfaces()) {
        for (const USB::USBInterfaceDescriptor& setting : interface.alternateSettings()) {
            ++settings;
            require(setting.endpoints().size() <= 32, "endpoints are those that there are");
        }
    }
    return settings;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Bytes input(data, data + std::min(size, answerSize));
    DfuFunctionalDescriptor functional;
    functional.transferSize = 77;
    if (!decodeFunctionalDescriptor(bytesOf(data, size), functional))
        require(functional.transferSize == 77, "no descriptor leaves the result untouched");

    OddlyConfiguredUnit unit(input);
    const FakeBus bus(unit);
    DfuDevice device(bus.record());
    try {
        device.init();
        require(device.segments().size() == segmentsOfASetting * unit.stringsRead,
                "each alternate setting's layout counts");
        require(countSettings(device.configDescriptor()) == unit.stringsRead,
                "each alternate setting's string is read once");
        checkFunctional(input, device);
    } catch (const USB::USBException&) {
        // A setting without a name of its own: there is no string 0.
        require(countSettings(device.configDescriptor()) > unit.stringsRead,
                "opening fails where a string cannot be read, and nowhere else");
    }
    device.close();
    return 0;
}
