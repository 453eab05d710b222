#include "unit/Bootloader.h"

#include "unit/Fault.h"

namespace VirtualUnit {

using Dfu::State;
using Dfu::Status;

namespace {

constexpr std::uint8_t classRead = 0xA1;
constexpr std::uint8_t classWrite = 0x21;

Status statusOf(Flash::Result result)
{
    switch (result) {
    case Flash::Result::Ok:
        return Status::Ok;
    case Flash::Result::OutOfRange:
        return Status::ErrTarget;
    case Flash::Result::Protected:
        return Status::ErrWrite;
    case Flash::Result::NotErased:
        return Status::ErrProg;
    }
    return Status::ErrUnknown;
}

std::uint32_t addressIn(const Bytes& command)
{
    std::uint32_t address = 0;
    for (std::size_t i = 0; i < 4; ++i)
        address |= static_cast<std::uint32_t>(command[1 + i]) << (8 * i);
    return address;
}

std::uint32_t blockOffset(const SetupPacket& setup, const Overrides& overrides)
{
    return std::uint32_t{overrides.transferSize} * (setup.wValue - DfuSe::FirstDataBlock);
}

} // namespace

void Bootloader::reset()
{
    m_state = State::Idle;
    m_status = Status::Ok;
    m_address = Flash::Start;
    m_work.reset();
    m_forcedStatus.reset();
    m_extraPolls = 0;
}

Answer Bootloader::handle(const SetupPacket& setup, const Bytes& data, const Overrides& overrides,
                          Clock::time_point now)
{
    settle(now);
    if (m_state == State::Manifest) // on its way out: it hears nothing any more
        return Answer::silence();
    if (setup.bmRequestType != (setup.isIn() ? classRead : classWrite) || setup.wIndex != 0)
        return refuse(Status::ErrStalledPacket);
    if (m_state == State::DownloadBusy && setup.bRequest != Dfu::GetStatus)
        return refuse(Status::ErrStalledPacket);

    switch (setup.bRequest) {
    case Dfu::GetStatus:
        return setup.isIn() ? getStatus(overrides, now) : refuse(Status::ErrStalledPacket);
    case Dfu::Upload:
        return setup.isIn() ? upload(setup, overrides) : refuse(Status::ErrStalledPacket);
    case Dfu::GetState:
        return setup.isIn() ? Answer::withData({static_cast<std::uint8_t>(m_state)})
                            : refuse(Status::ErrStalledPacket);
    case Dfu::Download:
        return setup.isIn() ? refuse(Status::ErrStalledPacket) : download(setup, data, overrides);
    case Dfu::ClearStatus:
        if (m_state != State::Error || m_forcedStatus)
            break;
        m_state = State::Idle;
        m_status = Status::Ok;
        return Answer::acknowledge();
    case Dfu::Abort:
        if (m_state == State::Error || m_forcedStatus)
            break;
        m_work.reset();
        m_state = State::Idle;
        return Answer::acknowledge();
    case Dfu::Detach: {
        if (m_state != State::Idle || m_forcedStatus)
            break;
        Answer answer = Answer::acknowledge();
        answer.departure = Departure{overrides.leaveDelay, overrides.returnDelay};
        return answer;
    }
    default:
        break;
    }
    return refuse(Status::ErrStalledPacket);
}

Answer Bootloader::refuse(Status status)
{
    m_status = m_forcedStatus.value_or(status);
    m_forcedStatus.reset();
    m_state = State::Error;
    m_work.reset();
    return Answer::stall();
}

Answer Bootloader::download(const SetupPacket& setup, const Bytes& data, const Overrides& overrides)
{
    if (m_state != State::DownloadIdle && (m_state != State::Idle || setup.wLength == 0))
        return refuse(Status::ErrStalledPacket);
    if (data.size() != setup.wLength || setup.wLength > overrides.transferSize)
        return refuse(Status::ErrStalledPacket);

    if (setup.wLength == 0) {
        m_state = State::ManifestSync;
        return Answer::acknowledge();
    }
    if (setup.wValue >= DfuSe::FirstDataBlock) {
        m_work = Work{Work::What::Program,
                      m_address + blockOffset(setup, overrides),
                      data,
                      {},
                      overrides.programTime,
                      {}};
    } else if (setup.wValue != 0 || !storeCommand(data, overrides)) {
        return refuse(Status::ErrStalledPacket);
    }
    m_work->forcedStatus = m_forcedStatus;
    m_forcedStatus.reset();
    m_state = State::DownloadSync;
    return Answer::acknowledge();
}

bool Bootloader::storeCommand(const Bytes& data, const Overrides& overrides)
{
    if (data.size() == 5 && data[0] == DfuSe::SetAddress)
        m_work = Work{Work::What::SetAddress, addressIn(data), {}, {}, overrides.commandTime, {}};
    else if (data.size() == 5 && data[0] == DfuSe::Erase)
        m_work = Work{Work::What::Erase, addressIn(data), {}, {}, overrides.eraseTime, {}};
    else if (data.size() == 1 && data[0] == DfuSe::Erase)
        m_work = Work{Work::What::EraseAll, 0, {}, {}, overrides.eraseTime, {}};
    else
        return false;
    return true;
}

Answer Bootloader::upload(const SetupPacket& setup, const Overrides& overrides)
{
    if ((m_state != State::Idle && m_state != State::UploadIdle) || m_forcedStatus ||
        setup.wLength > overrides.transferSize || setup.wValue == 1)
        return refuse(Status::ErrStalledPacket);

    Bytes data = {DfuSe::GetCommands, DfuSe::SetAddress, DfuSe::Erase};
    if (setup.wValue >= DfuSe::FirstDataBlock) {
        data = m_flash.read(m_address + blockOffset(setup, overrides), setup.wLength);
        if (data.empty() && setup.wLength > 0)
            return refuse(Status::ErrAddress);
    }
    // A short block tells the host that there is no more (DFU 1.1, section 6.2).
    m_state = data.size() < setup.wLength ? State::Idle : State::UploadIdle;
    return Answer::withData(std::move(data));
}

Answer Bootloader::getStatus(const Overrides& overrides, Clock::time_point now)
{
    if (m_forcedStatus) {
        m_status = *m_forcedStatus;
        m_forcedStatus.reset();
        m_state = State::Error;
        m_work.reset();
        return statusReply(overrides);
    }
    if (m_state == State::ManifestSync) {
        m_state = State::Manifest;
        Answer answer = statusReply(overrides);
        answer.departure = Departure{overrides.leaveDelay, overrides.returnDelay};
        return answer;
    }
    advance(now);
    return statusReply(overrides);
}

void Bootloader::advance(Clock::time_point now)
{
    if (m_state == State::DownloadSync && m_work) {
        m_work->due = now + m_work->duration;
        m_state = State::DownloadBusy;
    } else if (m_state == State::DownloadBusy) {
        if (m_extraPolls > 0) {
            m_extraPolls -= m_extraPolls == Fault::Forever ? 0 : 1;
            return;
        }
        if (!m_work || now >= m_work->due)
            finishWork();
    }
}

void Bootloader::settle(Clock::time_point now)
{
    // The work is done by itself, whether the host asks or not; only the report waits for it.
    if (m_state != State::DownloadBusy || !m_work || m_extraPolls > 0 || now < m_work->due)
        return;
    m_status = perform(*m_work);
    m_work.reset();
}

void Bootloader::finishWork()
{
    if (m_work) {
        m_status = perform(*m_work);
        m_work.reset();
    }
    m_state = m_status == Status::Ok ? State::DownloadIdle : State::Error;
}

Status Bootloader::perform(const Work& work)
{
    if (work.forcedStatus)
        return *work.forcedStatus;
    switch (work.what) {
    case Work::What::SetAddress:
        // The end itself is allowed: a host that leaves points just past what it wrote.
        if (work.address < Flash::Start || work.address > m_flash.end())
            return Status::ErrTarget;
        m_address = work.address;
        return Status::Ok;
    case Work::What::Erase:
        return statusOf(m_flash.erasePage(work.address));
    case Work::What::EraseAll:
        m_flash.eraseApplication();
        return Status::Ok;
    case Work::What::Program:
        return statusOf(m_flash.program(work.address, work.data));
    }
    return Status::ErrUnknown;
}

Answer Bootloader::statusReply(const Overrides& overrides) const
{
    if (overrides.statusAnswer)
        return Answer::withData(*overrides.statusAnswer);
    std::uint32_t wait = 0;
    if (m_state == State::DownloadBusy && m_work)
        wait = overrides.pollTimeout.value_or(static_cast<std::uint32_t>(m_work->duration.count()));
    else if (m_state == State::Manifest)
        wait = static_cast<std::uint32_t>(overrides.leaveDelay.count());
    return Answer::withData({static_cast<std::uint8_t>(m_status), static_cast<std::uint8_t>(wait),
                             static_cast<std::uint8_t>(wait >> 8),
                             static_cast<std::uint8_t>(wait >> 16),
                             static_cast<std::uint8_t>(m_state), 0});
}

} // namespace VirtualUnit
