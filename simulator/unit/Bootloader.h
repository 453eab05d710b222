#pragma once

#include "unit/Overrides.h"
#include "unit/Protocol.h"

namespace VirtualUnit {

/// The DFU bootloader of a unit: the state machine of DFU 1.1 (annex A) with the DfuSe commands.
///
/// A download is only stored; the first GETSTATUS answers dfuDNBUSY and starts the work, a later
/// one, after the work time, tells how it went. A request that the state does not allow is refused
/// and leads to dfuERROR. Not thread-safe; the unit locks. Time comes in from outside.
class Bootloader
{
public:
    explicit Bootloader(Flash& flash)
        : m_flash(flash)
    {
    }

    /// As after power-up: dfuIDLE, nothing pending.
    void reset();

    Answer handle(const SetupPacket& setup, const Bytes& data, const Overrides& overrides,
                  Clock::time_point now);

    /// Carries out work whose time has passed. Called before the flash is looked at from outside.
    void settle(Clock::time_point now);

    /// The request handled next fails with this status: a download when its work is done, GETSTATUS
    /// by reporting it, any other by a refusal.
    void failNext(Dfu::Status status) { m_forcedStatus = status; }

    /// The work in hand, or the next, is reported busy that many more times (Fault::Forever).
    void stayBusy(unsigned polls) { m_extraPolls = polls; }

    Dfu::State state() const { return m_state; }
    Dfu::Status status() const { return m_status; }

private:
    struct Work
    {
        enum class What
        {
            SetAddress,
            Erase,
            EraseAll,
            Program,
        };
        What what = What::SetAddress;
        std::uint32_t address = 0;
        Bytes data;
        std::optional<Dfu::Status> forcedStatus;
        milliseconds duration{0};
        Clock::time_point due;
    };

    Answer download(const SetupPacket& setup, const Bytes& data, const Overrides& overrides);
    bool storeCommand(const Bytes& data, const Overrides& overrides);
    Answer upload(const SetupPacket& setup, const Overrides& overrides);
    Answer getStatus(const Overrides& overrides, Clock::time_point now);
    void advance(Clock::time_point now);
    Answer statusReply(const Overrides& overrides) const;
    Answer refuse(Dfu::Status status);
    Dfu::Status perform(const Work& work);
    void finishWork();

    Flash& m_flash;
    Dfu::State m_state = Dfu::State::Idle;
    Dfu::Status m_status = Dfu::Status::Ok;
    std::uint32_t m_address = Flash::Start;
    std::optional<Work> m_work;
    std::optional<Dfu::Status> m_forcedStatus;
    unsigned m_extraPolls = 0;
};

} // namespace VirtualUnit
