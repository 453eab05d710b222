#include "HostileUnit.h"

#include <iterator>

namespace Fuzz {

using VirtualUnit::Bytes;
using VirtualUnit::Kind;
using VirtualUnit::Mode;
using VirtualUnit::SetupPacket;

namespace {

constexpr std::uint8_t firstDeed = 0x80;

constexpr int errors[] = {LIBUSB_ERROR_NO_DEVICE, LIBUSB_ERROR_IO,          LIBUSB_ERROR_ACCESS,
                          LIBUSB_ERROR_NOT_FOUND, LIBUSB_ERROR_BUSY,        LIBUSB_ERROR_PIPE,
                          LIBUSB_ERROR_NO_MEM,    LIBUSB_ERROR_INTERRUPTED, LIBUSB_ERROR_OTHER};

// One for all inputs: to make so much memory anew costs more than an update.
VirtualUnit::Flash& erasedFlash()
{
    static VirtualUnit::Flash flash;
    flash.fillApplication(0xFF);
    return flash;
}

} // namespace

HostileUnit::HostileUnit(ByteReader script)
    : m_script(script)
    , m_flash(erasedFlash())
{
    m_identity.kind = m_script.byte() % 2 == 0 ? Kind::Aquen : Kind::Solvar;
    m_knobs.serialName = "Left of the window";
    // Of its own, as there is no firmware in its flash: reading one would cost more than the rest.
    m_knobs.versionAnswer = Bytes{'1', '.', '2', '.', '0', 0, 0, 0};
    m_knobs.revisionAnswer = Bytes(64, 'r');
    m_standard.reset();
    m_bootloader.reset();
}

void HostileUnit::restartIntoBootloader()
{
    m_identity.mode = Mode::Bootloader;
    m_gone = false;
}

quint16 HostileUnit::productId() const
{
    return VirtualUnit::Descriptors::productId(m_identity.kind, m_identity.mode);
}

// Empty for an honest answer.
std::optional<HostileUnit::Deed> HostileUnit::nextDeed()
{
    if (--m_callsLeft <= 0)
        m_gone = true;
    const std::uint8_t entry = m_script.byte();
    if (entry < firstDeed)
        return std::nullopt;
    m_honest = false;
    return Deed((entry - firstDeed) % DeedCount);
}

int HostileUnit::scriptedError()
{
    return errors[m_script.byte() % std::size(errors)];
}

int HostileUnit::result(Call call)
{
    const std::optional<Deed> deed = nextDeed();
    if (deed == Leave)
        m_gone = true;
    if (m_gone && call != Call::DeviceDescriptor)
        return LIBUSB_ERROR_NO_DEVICE;
    return deed ? scriptedError() : 0;
}

int HostileUnit::activeConfiguration()
{
    const std::optional<Deed> deed = nextDeed();
    return deed ? m_script.byte() : 1;
}

Bytes HostileUnit::configuration()
{
    if (nextDeed())
        return m_script.counted();
    return VirtualUnit::Descriptors::configuration(m_identity, m_knobs);
}

int HostileUnit::readString(std::uint8_t index, std::string& text)
{
    const std::optional<Deed> deed = nextDeed();
    if (m_gone || deed == Leave)
        return LIBUSB_ERROR_NO_DEVICE;
    if (deed == Answer) {
        const Bytes bytes = m_script.counted();
        text.assign(bytes.begin(), bytes.end());
        return 0;
    }
    if (deed)
        return scriptedError();
    const auto honest =
        VirtualUnit::Descriptors::text(index, m_identity, m_knobs, m_flash.layout());
    if (!honest)
        return LIBUSB_ERROR_PIPE;
    text = *honest;
    return 0;
}

ControlEnd HostileUnit::control(const SetupPacket& setup, const Bytes& data)
{
    const std::optional<Deed> deed = nextDeed();
    ControlEnd end;
    if (m_gone)
        end.status = LIBUSB_TRANSFER_NO_DEVICE;
    else
        end = deed ? asScripted(*deed, setup, data) : honestly(setup, data);
    if (!setup.isIn()) {
        const bool arrived =
            end.submission == 0 && !end.silent && end.status == LIBUSB_TRANSFER_COMPLETED;
        m_written.push_back({setup, data, arrived});
    }
    return end;
}

ControlEnd HostileUnit::honestly(const SetupPacket& setup, const Bytes& data)
{
    // Longer than any work of the model takes: what is busy is done at the next request.
    m_now += std::chrono::seconds(1);
    VirtualUnit::Answer answer;
    if (setup.isStandard())
        answer = m_standard.handle(setup, m_identity, m_knobs, m_flash.layout());
    else if (m_identity.mode == Mode::Application)
        answer = m_application.handle(setup, m_knobs);
    else
        answer = m_bootloader.handle(setup, data, m_knobs, m_now);
    if (answer.departure)
        m_gone = true;
    ControlEnd end;
    end.data = std::move(answer.data);
    if (answer.kind == VirtualUnit::Answer::Kind::Stall)
        end.status = LIBUSB_TRANSFER_STALL;
    else if (answer.kind == VirtualUnit::Answer::Kind::Silence)
        end.status = LIBUSB_TRANSFER_TIMED_OUT;
    return end;
}

ControlEnd HostileUnit::asScripted(Deed deed, const SetupPacket& setup, const Bytes& data)
{
    ControlEnd end;
    switch (deed) {
    case Stall:
        end.status = LIBUSB_TRANSFER_STALL;
        return end;
    case TimeOut:
        end.status = LIBUSB_TRANSFER_TIMED_OUT;
        return end;
    case Leave:
        m_gone = true;
        end.status = LIBUSB_TRANSFER_NO_DEVICE;
        return end;
    case Overflow:
        end.status = LIBUSB_TRANSFER_OVERFLOW;
        return end;
    case TransferError:
        end.status = LIBUSB_TRANSFER_ERROR;
        return end;
    case Refuse:
        end.submission = scriptedError();
        return end;
    case BreakEvents:
        end = honestly(setup, data);
        end.events = scriptedError();
        // An interrupted wait is no reason to call the transfer off.
        end.silent = m_script.byte() % 2 != 0 && end.events != LIBUSB_ERROR_INTERRUPTED;
        return end;
    case CutShort:
        end = honestly(setup, data);
        end.data.resize(std::min<std::size_t>(end.data.size(), m_script.byte()));
        return end;
    case Answer:
        end.data = m_script.counted();
        return end;
    case AnswerStatus:
        end.data = m_script.bytes(6);
        return end;
    case ChangeByte: {
        end = honestly(setup, data);
        const std::size_t offset = m_script.byte() | std::size_t(m_script.byte()) << 8;
        if (!end.data.empty())
            end.data[offset % end.data.size()] = m_script.byte();
        return end;
    }
    case Ignore:
        return end;
    case Busy:
        m_bootloader.stayBusy(m_script.byte());
        break;
    case PersonStops:
        if (onStop)
            onStop();
        break;
    case TransferIsCalledOff:
        if (onCallOff) {
            onCallOff();
            end.silent = true;
            return end;
        }
        break;
    case DeedCount:
        break;
    }
    return honestly(setup, data);
}

} // namespace Fuzz
