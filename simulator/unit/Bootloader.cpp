// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/Bootloader.h"

#include "unit/Fault.h"

namespace VirtualUnit {

using Dfu::State;
using Dfu::Status;

namespace {

constexpr std::uint8_t classRead = 0xA1;
constexpr std::uint8_t classWrite = 0x21;

bool isRead(std::uint8_t request)
{
    return request == Dfu::Upload || request == Dfu::GetStatus || request == Dfu::GetState;
}

} // namespace

void Bootloader::reset(Clock::time_point now)
{
    settle(now);
    m_state = State::Idle;
    m_status = Status::Ok;
    m_address = Flash::Start;
    m_work.reset();
    m_forcedStatus.reset();
    m_extraPolls = 0;
}

Response Bootloader::handle(const SetupPacket& setup, const Bytes& data, Clock::time_point now)
{
    settle(now);
    const std::uint8_t request = setup.bRequest;
    if (m_state == State::Manifest) // about to leave: it takes no more requests
        return Response::silence();
    if (setup.bmRequestType != (isRead(request) ? classRead : classWrite) || setup.wIndex != 0)
        return refuse();
    if (request == Dfu::GetStatus)
        return getStatus(now);
    if (m_state == State::DownloadBusy)
        return refuse();
    if (request == Dfu::Download)
        return download(setup, data);
    if (m_forcedStatus)
        return refuse();
    if (request == Dfu::Upload)
        return upload(setup);
    if (request == Dfu::GetState)
        return Response::withData({static_cast<std::uint8_t>(m_state)});
    if (request == Dfu::Detach && m_state == State::Idle)
        return leave(Response::acknowledge());
    // CLRSTATUS is the way out of dfuERROR, ABORT the way out of every other state.
    if (request != (m_state == State::Error ? Dfu::ClearStatus : Dfu::Abort))
        return refuse();
    m_work.reset();
    m_state = State::Idle;
    m_status = Status::Ok;
    return Response::acknowledge();
}

Response Bootloader::refuse(Status status)
{
    m_status = m_forcedStatus.value_or(status);
    m_forcedStatus.reset();
    m_state = State::Error;
    m_work.reset();
    return Response::stall();
}

Response Bootloader::leave(Response response) const
{
    response.departure = Departure{m_overrides.leaveDelay, m_overrides.returnDelay};
    return response;
}

std::uint32_t Bootloader::addressOf(std::uint16_t block) const
{
    return m_address + std::uint32_t{m_overrides.transferSize} * (block - DfuSe::FirstDataBlock);
}

Response Bootloader::download(const SetupPacket& setup, const Bytes& data)
{
    const bool isEnd = setup.wLength == 0;
    if (m_state != State::DownloadIdle && (m_state != State::Idle || isEnd))
        return refuse();
    if (data.size() != setup.wLength || setup.wLength > m_overrides.transferSize)
        return refuse();
    if (isEnd) {
        m_state = State::ManifestSync;
        return Response::acknowledge();
    }
    if (setup.wValue >= DfuSe::FirstDataBlock) {
        const std::uint32_t address = addressOf(setup.wValue);
        const auto program = [this, address, data] {
            return m_flash.program(address, data);
        };
        m_work = Work{program, m_overrides.programTime, {}};
    } else {
        m_work = setup.wValue == 0 ? command(data) : std::nullopt;
        if (!m_work)
            return refuse();
    }
    if (m_forcedStatus)
        m_work->perform = [status = *m_forcedStatus] {
            return status;
        };
    m_forcedStatus.reset();
    m_state = State::DownloadSync;
    return Response::acknowledge();
}

std::optional<Bootloader::Work> Bootloader::command(const Bytes& data)
{
    if (data.size() == 1 && data[0] == DfuSe::Erase) {
        const auto eraseAll = [this] {
            m_flash.eraseApplication();
            return Status::Ok;
        };
        return Work{eraseAll, m_overrides.eraseTime, {}};
    }
    if (data.size() != 5)
        return std::nullopt;
    const std::uint32_t address = readNumber(&data[1], 4);
    if (data[0] == DfuSe::SetAddress)
        return Work{[this, address] { return setAddress(address); }, milliseconds(0), {}};
    if (data[0] == DfuSe::Erase)
        return Work{[this, address] { return m_flash.erasePage(address, m_overrides.pageSize); },
                    m_overrides.eraseTime,
                    {}};
    return std::nullopt;
}

Status Bootloader::setAddress(std::uint32_t address)
{
    // The end itself is allowed: a host that leaves points just behind what it wrote.
    if (address < Flash::Start || address > Flash::End)
        return Status::ErrTarget;
    m_address = address;
    return Status::Ok;
}

Response Bootloader::upload(const SetupPacket& setup)
{
    if ((m_state != State::Idle && m_state != State::UploadIdle) ||
        setup.wLength > m_overrides.transferSize || setup.wValue == 1)
        return refuse();
    Bytes data = {DfuSe::GetCommands, DfuSe::SetAddress, DfuSe::Erase};
    if (setup.wValue >= DfuSe::FirstDataBlock) {
        data = m_flash.read(addressOf(setup.wValue), setup.wLength);
        if (data.empty() && setup.wLength > 0)
            return refuse(Status::ErrAddress);
    }
    // A short block means that there is no more (DFU 1.1, section 6.2).
    m_state = data.size() < setup.wLength ? State::Idle : State::UploadIdle;
    return Response::withData(std::move(data));
}

Response Bootloader::getStatus(Clock::time_point now)
{
    if (m_forcedStatus) {
        refuse(); // leads to dfuERROR with that status, which is then reported
    } else if (m_state == State::ManifestSync) {
        m_state = State::Manifest;
        return leave(statusReport());
    } else if (m_state == State::DownloadSync) {
        m_work->due = now + m_work->duration;
        m_state = State::DownloadBusy;
    } else if (m_state == State::DownloadBusy && m_extraPolls > 0) {
        m_extraPolls -= m_extraPolls == Fault::Forever ? 0 : 1;
    } else if (m_state == State::DownloadBusy && !m_work) {
        m_state = m_status == Status::Ok ? State::DownloadIdle : State::Error;
    }
    return statusReport();
}

void Bootloader::settle(Clock::time_point now)
{
    // The work is done even if the host does not poll.
    if (m_state != State::DownloadBusy || !m_work || m_extraPolls > 0 || now < m_work->due)
        return;
    m_status = m_work->perform();
    m_work.reset();
}

Response Bootloader::statusReport() const
{
    milliseconds wait{0};
    if (m_state == State::DownloadBusy && m_work)
        wait = m_work->duration;
    else if (m_state == State::Manifest)
        wait = m_overrides.leaveDelay;
    Bytes report = {static_cast<std::uint8_t>(m_status), 0, 0, 0,
                    static_cast<std::uint8_t>(m_state),  0};
    writeNumber(&report[1], 3, static_cast<std::uint32_t>(wait.count()));
    return Response::withData(std::move(report));
}

} // namespace VirtualUnit
