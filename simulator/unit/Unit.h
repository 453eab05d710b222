#pragma once

#include "unit/Descriptors.h"
#include "unit/Fault.h"
#include "unit/TraceEntry.h"

#include <functional>
#include <memory>

namespace VirtualUnit {

/// How a unit is born.
struct UnitSetup
{
    Kind kind = Kind::Aquen;
    Mode mode = Mode::Application;
    std::string serialName = "Virtual unit";
    /// Version of the image in its flash. Without one the flash is erased: such a unit starts as a
    /// bootloader whatever `mode` says, as after an interrupted update.
    std::optional<std::string> firmware;
    std::size_t imageSize = 16384; ///< of that image, in bytes
    std::uint32_t schemaVersion = 5;
    std::string usbSerial = "000000000001";
};

/// One virtual washing or curing unit: application firmware, bootloader and flash. It answers
/// control requests and knows nothing of the bus it sits on; a bus calls control(), carries out the
/// Answer, and says when the unit came (arrive) and went (leave).
///
/// Every function may be called from any thread at any time.
class Unit
{
public:
    using Now = std::function<Clock::time_point()>;

    /// Why a unit is gone.
    enum class Reason
    {
        Restarted, ///< it left by itself, as its last Answer said
        Unplugged, ///< it lost power: a wish to enter the bootloader is forgotten
    };

    /// @p now is where the unit takes the time from. Throws std::invalid_argument for a firmware
    /// that makes no image.
    explicit Unit(const UnitSetup& setup, Now now = &Clock::now);
    Unit(const Unit&) = delete;
    Unit& operator=(const Unit&) = delete;
    ~Unit();

    // For the bus.

    /// Handles one control request. @p data holds what the host sends, empty for an IN request.
    Answer control(const SetupPacket& setup, const Bytes& data);
    /// The unit got power. From the second time on it starts the application if its flash holds a
    /// valid one, else the bootloader.
    void arrive();
    void leave(Reason reason);
    /// The host resets the port: the unit stays what it is, a bootloader goes back to dfuIDLE.
    void busReset();
    Bytes deviceDescriptor() const;
    Bytes configurationDescriptor() const;
    /// The string of that index (see Descriptors), empty when there is none.
    std::string stringText(std::uint8_t index) const;

    // For tests and demos.

    Kind kind() const;
    Mode mode() const;
    std::uint16_t productId() const;
    /// The version of the valid image in the flash; empty when there is none.
    std::string firmwareVersion() const;

    Overrides overrides() const;
    void setKnobs(const Overrides& overrides);
    /// Changes overrides in place; @p change runs under the unit's lock and must not call the unit.
    void adjust(const std::function<void(Overrides&)>& change);

    /// Plans a fault. Its start point is now, or a later restartCounting().
    void addFault(const Fault& fault);
    void clearFaults();
    void restartCounting();

    /// Every control request so far, in order of arrival.
    std::vector<TraceEntry> trace() const;
    void clearTrace();

    /// DFU state of the bootloader.
    Dfu::State dfuState() const;

    /// At most @p length bytes of flash from @p address.
    Bytes readFlash(std::uint32_t address, std::size_t length) const;
    /// What the application area holds: the image where it is valid, else all up to the last byte
    /// that is not erased.
    Bytes applicationContent() const;
    void fillApplication(std::uint8_t value);
    void loadImage(const Bytes& image);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

using P_Unit = std::shared_ptr<Unit>;

} // namespace VirtualUnit
