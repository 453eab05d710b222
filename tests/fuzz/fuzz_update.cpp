// A whole update of a hostile unit: the running unit is loaded and sent to its bootloader, that is
// opened, and a small image is written.
#include "Harness.h"
#include "HostileUnit.h"
#include "USB/USBException.h"
#include "devices/AquenSolvarDevice.h"
#include "unit/FirmwareImage.h"
#include "update/DetachedJob.h"

#include <QCoreApplication>

using namespace AquenSolvar::Device;
using namespace Fuzz;
using VirtualUnit::Bytes;

namespace {

constexpr int maxFirmwareSize = 0x28000;
constexpr std::size_t imageSize = 5000;

const QByteArray& image()
{
    static const Bytes bytes = VirtualUnit::makeImage(imageSize, "1.3.1");
    static const QByteArray all = bytesOf(bytes.data(), bytes.size());
    return all;
}

// What a job said, collected on its thread and read when that has ended.
struct JobRecorder
{
    QStringList errors;
    QVector<float> progress;
    int finished = 0;
    bool stopped = false;
};

// Follows what was sent to the bootloader and holds it against the rules of an update.
class Auditor
{
public:
    explicit Auditor(const DfuDevice& device)
        : m_device(device)
        , m_transferSize(device.transferSize())
    {
    }

    void check(const Written& request)
    {
        require(request.setup.bmRequestType == 0x21 && request.setup.wIndex == 0,
                "all that is written are class requests to interface 0");
        if (request.setup.bRequest == VirtualUnit::Dfu::ClearStatus)
            return;
        require(request.setup.bRequest == VirtualUnit::Dfu::Download,
                "nothing but downloads and clearings is sent");
        require(!m_ended, "nothing is written after the end of the download");
        if (request.setup.wValue == 0)
            checkCommand(request);
        else
            checkData(request);
    }

    bool complete() const { return m_ended && m_endArrived; }

private:
    quint32 nextAddress() const { return DfuDevice::imageStartAddress + quint32(m_sent); }

    void checkCommand(const Written& request)
    {
        require(request.data.size() == 5, "a command has five bytes");
        quint32 address = 0;
        for (std::size_t i = 4; i > 0; --i)
            address = address << 8 | request.data[i];
        if (request.data[0] == VirtualUnit::DfuSe::Erase) {
            // Never a page below the application, and none that the next chunk could not touch.
            require(address >= nextAddress() && address - nextAddress() < m_transferSize,
                    "only what is written next is erased");
            require(address == nextAddress() + m_erased * pageSize(),
                    "each page of a chunk is erased, in order");
            ++m_erased;
        } else {
            require(request.data[0] == VirtualUnit::DfuSe::SetAddress,
                    "a command is an erase or an address");
            require(address == nextAddress(), "the address is that of the next chunk");
            m_addressSet = request.arrived;
        }
    }

    void checkData(const Written& request)
    {
        require(request.setup.wValue == VirtualUnit::DfuSe::FirstDataBlock,
                "data goes to the address pointer");
        require(m_addressSet, "data follows an address that the unit took");
        if (request.data.empty()) {
            require(m_sent >= image().size(),
                    "the download is ended only when the whole image was written");
            m_ended = true;
            m_endArrived = request.arrived;
            return;
        }
        require(m_sent < image().size(), "nothing is written past the image");
        require(pageSize() != 0, "a chunk is written only where the layout has flash");
        require(quint64(m_erased) * pageSize() >= m_transferSize,
                "a chunk is written only to what was erased");
        require(bytesOf(request.data.data(), request.data.size()) ==
                    image().mid(m_sent, int(m_transferSize)),
                "a chunk is the part of the image that belongs there");
        require(m_lastArrived, "nothing follows a chunk that did not arrive");
        m_lastArrived = request.arrived;
        m_sent += m_transferSize;
        m_erased = 0;
        m_addressSet = false;
    }

    quint32 pageSize() const { return m_device.segmentForAddress(nextAddress()).pageSize; }

    const DfuDevice& m_device;
    quint32 m_transferSize;
    int m_sent = 0;
    quint32 m_erased = 0;
    bool m_addressSet = false;
    bool m_lastArrived = true;
    bool m_ended = false;
    bool m_endArrived = false;
};

void checkOutcome(const JobRecorder& heard, const HostileUnit& unit, bool complete)
{
    const int errors = heard.errors.size();
    require(heard.finished <= 1 && errors <= 2, "a job ends once");
    require(heard.finished == 0 || errors == 0, "a job that finished tells no error");
    require(heard.stopped || heard.finished + errors > 0, "a job ends with a word");
    require(errors < 2 || heard.errors[1].startsWith(QLatin1String("Caught USB exception: Error ")),
            "a second error is the first one, wrapped");
    require(heard.finished == 0 || complete, "finished means that all was written");
    float last = -1;
    for (const float fraction : heard.progress) {
        require(fraction > last && fraction < 1, "progress goes from 0 upward and stays below 1");
        last = fraction;
    }
    if (!unit.wasHonest())
        return;
    require(heard.finished == 1, "an honest unit is updated");
    const Bytes content = unit.applicationContent();
    require(bytesOf(content.data(), imageSize) == image(), "an honest unit has the image, whole");
}

// The running unit: loaded as its card is, then sent to its bootloader.
void dropToBootloader(const FakeBus& bus)
{
    try {
        AquenSolvarDevice running(bus.record());
        running.dropToBootloader();
    } catch (const USB::USBException&) {
        // It cannot be opened: no card. It may be in its bootloader all the same.
    }
}

QSharedPointer<DfuDevice> openBootloader(const FakeBus& bus)
{
    QSharedPointer<DfuDevice> device;
    try {
        device = QSharedPointer<DfuDevice>(
            new DfuDevice(bus.record(), {std::chrono::milliseconds(0)}), &QObject::deleteLater);
        device->init();
        device->setAlternateSetting(0);
    } catch (const USB::USBException&) {
        if (device)
            device->close();
        device.reset();
    }
    return device;
}

void flash(const QSharedPointer<DfuDevice>& device, HostileUnit& unit)
{
    const std::size_t before = unit.written().size();
    JobRecorder heard;
    const QSharedPointer<DFUDownloadJob> job(new DFUDownloadJob(image(), device, maxFirmwareSize),
                                             &DetachedJob::release);
    const auto here = Qt::DirectConnection;
    QObject::connect(
        job.data(), &DFUDownloadJob::uploadError, job.data(),
        [&heard](const QString& text) { heard.errors << text; }, here);
    QObject::connect(
        job.data(), &DFUDownloadJob::uploadProgress, job.data(),
        [&heard](float fraction) { heard.progress << fraction; }, here);
    QObject::connect(
        job.data(), &DFUDownloadJob::uploadFinished, job.data(), [&heard] { ++heard.finished; },
        here);
    unit.onStop = [&heard, &job] {
        heard.stopped = true;
        job->requestStop();
    };
    unit.onCallOff = [&device] {
        device->abortTransfers();
    };
    job->start();
    job->wait();
    unit.onStop = nullptr;
    unit.onCallOff = nullptr;

    Auditor auditor(*device);
    for (std::size_t i = before; i < unit.written().size(); ++i)
        auditor.check(unit.written()[i]);
    checkOutcome(heard, unit, auditor.complete());
    device->close();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    HostileUnit unit(ByteReader(data, size));
    {
        const FakeBus bus(unit);
        dropToBootloader(bus);
        unit.restartIntoBootloader();
        {
            const QSharedPointer<DfuDevice> device = openBootloader(bus);
            if (device)
                flash(device, unit);
            else
                require(!unit.wasHonest(), "an honest bootloader can be opened");
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return 0;
}
