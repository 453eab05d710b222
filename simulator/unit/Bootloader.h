// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Overrides.h"

#include <functional>

namespace VirtualUnit {

/// The DFU bootloader of a unit: the state machine of DFU 1.1 (annex A) with the DfuSe commands.
///
/// A download is only stored; the first GETSTATUS reports dfuDNBUSY and starts the work, a later
/// one, after the work time, reports the result. A request that the state does not allow is refused
/// and leads to dfuERROR. Not thread-safe; the unit locks. The caller supplies the time.
class Bootloader
{
public:
    /// Both must outlive this object.
    Bootloader(Flash& flash, const Overrides& overrides)
        : m_flash(flash)
        , m_overrides(overrides)
    {
    }

    /// Settles, then resets to the state after power-up: dfuIDLE, nothing pending.
    void reset(Clock::time_point now);

    Response handle(const SetupPacket& setup, const Bytes& data, Clock::time_point now);

    /// Carries out work whose time has passed. To be called before the flash is read from outside.
    void settle(Clock::time_point now);

    /// The next request fails with this status: a download when its work is done, GETSTATUS by
    /// reporting it, any other by a refusal.
    void failNext(Dfu::Status status) { m_forcedStatus = status; }

    /// The pending work, or the next, is reported busy that many more times (Fault::Forever).
    void stayBusy(unsigned polls) { m_extraPolls = polls; }

    Dfu::State state() const { return m_state; }

private:
    struct Work
    {
        std::function<Dfu::Status()> perform;
        milliseconds duration{0};
        Clock::time_point due;
    };

    Response download(const SetupPacket& setup, const Bytes& data);
    std::optional<Work> command(const Bytes& data);
    Dfu::Status setAddress(std::uint32_t address);
    Response upload(const SetupPacket& setup);
    Response getStatus(Clock::time_point now);
    Response statusReport() const;
    Response refuse(Dfu::Status status = Dfu::Status::ErrStalledPacket);
    Response leave(Response response) const;
    std::uint32_t addressOf(std::uint16_t block) const;

    Flash& m_flash;
    const Overrides& m_overrides;
    Dfu::State m_state = Dfu::State::Idle;
    Dfu::Status m_status = Dfu::Status::Ok;
    std::uint32_t m_address = Flash::Start;
    std::optional<Work> m_work;
    std::optional<Dfu::Status> m_forcedStatus;
    unsigned m_extraPolls = 0;
};

} // namespace VirtualUnit
