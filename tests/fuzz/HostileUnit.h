#pragma once

#include "ByteReader.h"
#include "FakeLibusb.h"
#include "unit/Application.h"
#include "unit/Bootloader.h"
#include "unit/StandardRequests.h"

#include <functional>

namespace Fuzz {

/// One request to a unit that changes something there.
struct Written
{
    VirtualUnit::SetupPacket setup;
    VirtualUnit::Bytes data;
    bool arrived = false; ///< the program was told that it did
};

/// A unit that lives through a whole update and lies where its script says so. The script has one
/// entry per call: a byte below 0x80, and all that follows the script's end, is an honest answer of
/// the simulator's model of a unit; any other byte is a Deed, with what it needs in the bytes after
/// it. After a fixed number of calls it leaves the bus, so that each script ends.
class HostileUnit : public FakeUnit
{
public:
    /// What a script entry of 0x80 + n stands for.
    enum Deed
    {
        Stall,
        TimeOut,
        Leave,
        Overflow,
        TransferError,
        Refuse,       ///< the submission fails with the error of the next byte
        BreakEvents,  ///< waiting fails with the error of the next byte; what happens to the
                      ///< transfer, the byte after it says
        CutShort,     ///< honest, but no longer than the next byte says
        Answer,       ///< bytes of the script, with their number in front
        AnswerStatus, ///< six bytes of the script
        ChangeByte,   ///< honest but for one byte: two bytes offset, one byte value
        Ignore,       ///< the request is acknowledged and never carried out
        Busy,         ///< what was begun, or is next, stays busy for as many reads as a byte says
        PersonStops,  ///< the program is asked to stop, then honest
        TransferIsCalledOff, ///< silence, until the program calls the transfer off
        DeedCount
    };

    explicit HostileUnit(ByteReader script);

    /// Called when the script says that the person stops the update, or that the program gives the
    /// transfer up.
    std::function<void()> onStop;
    std::function<void()> onCallOff;

    /// From now on the unit is in its bootloader, as after its restart.
    void restartIntoBootloader();

    quint16 productId() const override;
    int result(Call call) override;
    int activeConfiguration() override;
    VirtualUnit::Bytes configuration() override;
    int readString(std::uint8_t index, std::string& text) override;
    ControlEnd control(const VirtualUnit::SetupPacket& setup,
                       const VirtualUnit::Bytes& data) override;

    /// Whether every answer so far was the model's.
    bool wasHonest() const { return m_honest; }
    const std::vector<Written>& written() const { return m_written; }
    VirtualUnit::Bytes applicationContent() const { return m_flash.application(); }

private:
    std::optional<Deed> nextDeed();
    int scriptedError();
    ControlEnd honestly(const VirtualUnit::SetupPacket& setup, const VirtualUnit::Bytes& data);
    ControlEnd asScripted(Deed deed, const VirtualUnit::SetupPacket& setup,
                          const VirtualUnit::Bytes& data);

    ByteReader m_script;
    VirtualUnit::Flash& m_flash;
    VirtualUnit::Application m_application{m_flash};
    VirtualUnit::Bootloader m_bootloader{m_flash};
    VirtualUnit::StandardRequests m_standard;
    VirtualUnit::Identity m_identity;
    VirtualUnit::Overrides m_knobs;
    VirtualUnit::Clock::time_point m_now;
    std::vector<Written> m_written;
    int m_callsLeft = 600;
    bool m_honest = true;
    bool m_gone = false;
};

} // namespace Fuzz
