// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Application.h"
#include "unit/Bootloader.h"
#include "unit/Fault.h"
#include "unit/FirmwareImage.h"
#include "unit/StandardRequests.h"
#include "unit/TraceEntry.h"

#include <memory>
#include <mutex>

namespace VirtualUnit {

/// The initial state of a unit.
struct UnitSetup
{
    Kind kind = Kind::Aquen;
    Mode mode = Mode::Application;
    std::string serialName = "Virtual unit";
    /// Version of the image in its flash. Without one the flash is erased: such a unit starts as a
    /// bootloader regardless of `mode`, as after an interrupted update.
    std::optional<std::string> firmware;
    std::string usbSerial = "000000000001";
    int openError = 0; ///< of libusb, to whoever opens it; only simulator/libusb can do that
};

/// One virtual washing or curing unit: application firmware, bootloader and flash. It handles
/// control requests and knows nothing of the bus it is on; a bus calls control(), carries out the
/// Response, and reports that the unit came (arrive) and went (leave).
///
/// Every function may be called from any thread at any time.
class Unit
{
public:
    using Now = std::function<Clock::time_point()>;

    /// Why a unit left the bus.
    enum class Reason
    {
        Restarted, ///< it left by itself, as its last Response announced
        Unplugged, ///< it lost power: a request to enter the bootloader is forgotten
    };

    /// @p now supplies the current time. Throws std::invalid_argument for a firmware version of
    /// which no image can be made.
    explicit Unit(const UnitSetup& setup, Now now = &Clock::now);

    // For the bus.

    /// Handles one control request. @p data is what the host sends, empty for an IN request.
    Response control(const SetupPacket& setup, const Bytes& data);
    /// The unit is powered on. From the second time on it starts the application if its flash holds
    /// a valid one, else the bootloader.
    void arrive();
    void leave(Reason reason);
    /// The host resets the port: the unit's mode stays, a bootloader goes back to dfuIDLE.
    void busReset();
    /// The device descriptor, and behind it the configuration descriptor.
    Bytes descriptors() const;
    /// The string of that index (see Descriptors); empty when there is none.
    std::string stringText(std::uint8_t index) const;
    int openError() const { return m_openError; }

    // For tests and demos.

    Mode mode() const;
    std::uint16_t productId() const { return Descriptors::productId(m_identity.kind, mode()); }
    /// The version of the valid image in the flash; empty when there is none.
    std::string firmwareVersion() const;

    /// Changes the overrides; @p change runs under the unit's lock and must not call the unit.
    void adjust(const std::function<void(Overrides&)>& change);

    /// Plans a fault: requests count from now on, for each fault separately.
    void addFault(const Fault& fault);
    void clearFaults();

    /// Every control request so far, in order of arrival.
    std::vector<TraceEntry> trace() const;
    void clearTrace();

    /// DFU state of the bootloader.
    Dfu::State dfuState() const;

    /// The image in the application area if it is valid, else all up to the last byte that is not
    /// erased.
    Bytes applicationContent() const;
    void loadImage(const Bytes& image);

private:
    Response respond(const SetupPacket& setup, const Bytes& data);
    Response respondWithFaults(const SetupPacket& setup, const Bytes& data);
    ImageInfo image() const;

    mutable std::mutex m_mutex;
    const Now m_now;
    const int m_openError;
    Identity m_identity;
    Overrides m_overrides;
    Flash m_flash;
    const Application m_application{m_flash, m_overrides};
    mutable Bootloader m_bootloader{m_flash, m_overrides}; ///< settles when the flash is read
    StandardRequests m_standard{m_identity, m_overrides};
    std::vector<Fault> m_faults;
    std::vector<TraceEntry> m_trace;
    bool m_hasArrived = false;
    bool m_wantsBootloader = false;
};

using P_Unit = std::shared_ptr<Unit>;

} // namespace VirtualUnit
