#include "unit/Protocol.h"
#include "usbip/UsbipConnection.h"

#include <QtTest>

#include <atomic>
#include <cerrno>
#include <poll.h>
#include <set>
#include <sys/socket.h>
#include <unistd.h>

using namespace VirtualUnit;

namespace {

constexpr std::uint32_t submitCommand = 1;
constexpr std::uint32_t unlinkCommand = 2;
constexpr std::uint32_t submitReply = 3;
constexpr std::uint32_t unlinkReply = 4;

const SetupPacket getDeviceDescriptor{0x80, Standard::GetDescriptor, 0x0100, 0, 18};
const SetupPacket getNothing{0x80, Standard::GetDescriptor, 0x0600, 0, 10};
const SetupPacket setConfiguration{0x00, Standard::SetConfiguration, 1, 0, 0};
const SetupPacket dropToBootloader{0x41, Vendor::DropToBootloader, 0, 0, 0};

struct Reply
{
    std::uint32_t command = 0;
    std::uint32_t sequence = 0;
    int status = 0;
    Bytes data;
};

/// Speaks as the kernel does, byte by byte as the protocol lays it out: no code of the simulator's.
class Kernel
{
public:
    explicit Kernel(int socket)
        : m_socket(socket)
    {
    }
    ~Kernel() { ::close(m_socket); }

    void submit(std::uint32_t sequence, const SetupPacket& setup, std::uint32_t endpoint = 0)
    {
        Bytes message = begin(submitCommand, sequence, setup.isIn() ? 1 : 0, endpoint);
        append(message, 0); // flags
        append(message, setup.wLength);
        append(message, 0); // start frame
        append(message, 0); // packets
        append(message, 0); // interval
        const auto wire = setup.toWire();
        message.insert(message.end(), wire.begin(), wire.end());
        if (!setup.isIn())
            message.insert(message.end(), setup.wLength, 0x5A);
        write(message);
    }

    void unlink(std::uint32_t sequence, std::uint32_t unlinked)
    {
        Bytes message = begin(unlinkCommand, sequence, 0, 0);
        append(message, unlinked);
        message.resize(48);
        write(message);
    }

    void write(const Bytes& message)
    {
        QCOMPARE(::write(m_socket, message.data(), message.size()),
                 static_cast<ssize_t>(message.size()));
    }

    /// The next reply; none within that time gives command 0.
    Reply read(int timeoutMs = 2000)
    {
        Bytes header(48);
        if (!readBytes(header, timeoutMs))
            return {};
        Reply reply{number(header, 0), number(header, 4), static_cast<int>(number(header, 20)), {}};
        if (reply.command == submitReply && reply.status == 0) {
            reply.data.resize(number(header, 24));
            m_moved = reply.data.size();
            if (!m_out.count(reply.sequence) && !readBytes(reply.data, timeoutMs))
                return {};
        }
        return reply;
    }

    /// Whether the other side has closed.
    bool meetsEnd()
    {
        Bytes byte(1);
        pollfd waiting{m_socket, POLLIN, 0};
        return ::poll(&waiting, 1, 2000) == 1 && ::recv(m_socket, byte.data(), 1, 0) == 0;
    }

    void expectNoData(std::uint32_t sequence) { m_out.insert(sequence); }
    std::size_t moved() const { return m_moved; }

private:
    static Bytes begin(std::uint32_t command, std::uint32_t sequence, std::uint32_t direction,
                       std::uint32_t endpoint)
    {
        Bytes message;
        for (const std::uint32_t value : {command, sequence, std::uint32_t{2}, direction, endpoint})
            append(message, value);
        return message;
    }
    static void append(Bytes& message, std::uint32_t value)
    {
        for (const int shift : {24, 16, 8, 0})
            message.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    static std::uint32_t number(const Bytes& bytes, std::size_t at)
    {
        return static_cast<std::uint32_t>(bytes[at]) << 24 |
               static_cast<std::uint32_t>(bytes[at + 1]) << 16 |
               static_cast<std::uint32_t>(bytes[at + 2]) << 8 | bytes[at + 3];
    }
    bool readBytes(Bytes& bytes, int timeoutMs) const
    {
        std::size_t have = 0;
        while (have < bytes.size()) {
            pollfd waiting{m_socket, POLLIN, 0};
            if (::poll(&waiting, 1, timeoutMs) != 1)
                return false;
            const ssize_t count = ::recv(m_socket, bytes.data() + have, bytes.size() - have, 0);
            if (count <= 0)
                return false;
            have += static_cast<std::size_t>(count);
        }
        return true;
    }

    const int m_socket;
    std::set<std::uint32_t> m_out;
    std::size_t m_moved = 0;
};

} // namespace

/// A unit behind a socket, as the kernel's driver meets it.
class tst_usbip : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        int ends[2] = {-1, -1};
        QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        UnitSetup setup;
        setup.firmware = "1.2.0";
        m_unit = std::make_shared<Unit>(setup);
        m_unit->arrive();
        m_departures = 0;
        m_kernel = std::make_unique<Kernel>(ends[1]);
        m_connection = std::make_unique<UsbipConnection>(
            ends[0], m_unit, m_scheduler,
            [this](milliseconds, const Departure&) { ++m_departures; });
    }

    void cleanup()
    {
        m_connection.reset();
        m_kernel.reset();
    }

    void answers()
    {
        m_kernel->submit(7, getDeviceDescriptor);
        Reply reply = m_kernel->read();
        QCOMPARE(reply.command, submitReply);
        QCOMPARE(reply.sequence, 7U);
        QCOMPARE(reply.status, 0);
        QCOMPARE(reply.data, m_unit->deviceDescriptor());

        m_kernel->submit(8, getNothing);
        QCOMPARE(m_kernel->read().status, -EPIPE);

        m_kernel->submit(9, getDeviceDescriptor, 1);
        QCOMPARE(m_kernel->read().status, -ENOENT);

        m_kernel->expectNoData(10);
        m_kernel->submit(10, setConfiguration);
        QCOMPARE(m_kernel->read().status, 0);

        // The payload of a refused request must not be taken for the next header.
        SetupPacket withPayload{0x21, Dfu::Download, 0, 0, 300};
        m_kernel->submit(11, withPayload);
        QCOMPARE(m_kernel->read().status, -EPIPE);
        QCOMPARE(m_unit->trace().back().payload.size(), std::size_t{300});
        m_kernel->submit(12, getDeviceDescriptor);
        QCOMPARE(m_kernel->read().sequence, 12U);
    }

    void takesData()
    {
        UnitSetup setup;
        setup.mode = Mode::Bootloader;
        int ends[2] = {-1, -1};
        QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        Kernel kernel(ends[1]);
        const auto bootloader = std::make_shared<Unit>(setup);
        const UsbipConnection connection(ends[0], bootloader, m_scheduler, {});
        kernel.expectNoData(1);
        kernel.submit(1, {0x21, Dfu::Download, 2, 0, 2048});
        QCOMPARE(kernel.read().status, 0);
        QCOMPARE(kernel.moved(), std::size_t{2048});
        QCOMPARE(bootloader->trace().back().payload, Bytes(2048, 0x5A));
    }

    void callsOff()
    {
        m_unit->addFault(Fault::on("descriptor", Fault::Action::Silence));
        m_kernel->submit(1, getDeviceDescriptor);
        m_kernel->unlink(2, 1);
        Reply reply = m_kernel->read();
        QCOMPARE(reply.command, unlinkReply);
        QCOMPARE(reply.sequence, 2U);
        QCOMPARE(reply.status, -ECONNRESET);

        m_kernel->submit(3, getDeviceDescriptor);
        QCOMPARE(m_kernel->read().sequence, 3U);
        m_kernel->unlink(4, 3);
        reply = m_kernel->read();
        QCOMPARE(reply.command, unlinkReply);
        QCOMPARE(reply.status, 0);
    }

    void answersLate()
    {
        m_unit->addFault(Fault::on("descriptor", Fault::Action::Delay, 150));
        m_unit->addFault(Fault::on("descriptor", Fault::Action::Delay, 150, 3));
        m_kernel->submit(1, getDeviceDescriptor);
        m_kernel->submit(2, getDeviceDescriptor);
        QCOMPARE(m_kernel->read().sequence, 2U);
        QCOMPARE(m_kernel->read().sequence, 1U);

        // What was called off is not answered any more.
        m_kernel->submit(3, getDeviceDescriptor);
        m_kernel->unlink(4, 3);
        QCOMPARE(m_kernel->read().command, unlinkReply);
        QCOMPARE(m_kernel->read(400).command, 0U);
    }

    void leaves()
    {
        m_kernel->expectNoData(1);
        m_kernel->submit(1, dropToBootloader);
        QCOMPARE(m_kernel->read().status, 0);
        QCOMPARE(m_departures.load(), 1);
        m_unit->addFault(Fault::on("descriptor", Fault::Action::Silence));
        m_kernel->submit(2, getDeviceDescriptor); // pending while the cable is pulled
        m_connection.reset();
        QVERIFY(m_kernel->meetsEnd());
    }

    void endsOnGarbage()
    {
        m_kernel->write(Bytes(48, 0xFF));
        QVERIFY(m_kernel->meetsEnd());
    }

private:
    std::shared_ptr<Scheduler> m_scheduler = std::make_shared<Scheduler>();
    std::shared_ptr<Unit> m_unit;
    std::unique_ptr<Kernel> m_kernel;
    std::unique_ptr<UsbipConnection> m_connection;
    std::atomic<int> m_departures{0};
};

QTEST_GUILESS_MAIN(tst_usbip)

#include "tst_usbip.moc"
