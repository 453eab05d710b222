// SPDX-License-Identifier: LicenseRef-Proprietary
#include "update/DFUDownloadJob.h"

#include "USB/USBException.h"
#include "qslog/Log.h"
#include "update/SleepInhibitor.h"

#include <QCoreApplication>

namespace AquenSolvar::Device {

namespace {

// With this block number the bootloader writes a chunk at its address pointer: the address of block
// n is pointer + (n - 2) * transfer size (DfuSe application note).
constexpr quint16 dataBlock = 2;

// How long a cancelled transfer may take to return.
constexpr unsigned long abortWaitMs = 1000;

// User texts that several steps fail with.
constexpr const char* readStatusFailed =
    //: Progress bar (70 letters; CJK 40): an update has failed, the unit did not report how it
    //: is.
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to read device status.");
constexpr const char* eraseFailed =
    //: Progress bar (70 letters; CJK 40): an update has failed, the unit did not erase a part of
    //: its flash memory.
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to erase flash.");
constexpr const char* uploadDataFailed =
    //: Progress bar (70 letters; CJK 40): an update has failed, the unit did not take a piece of
    //: the firmware.
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob", "Failed to upload firmware data.");
//: Progress bar (70 letters; CJK 40): an update has failed at its very end, after all data was
//: written.
constexpr const char* finalizeFailed = QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob",
                                                         "Failed to finalize firmware flashing.");

constexpr const char* badState =
    QT_TRANSLATE_NOOP("AquenSolvar::Device::DFUDownloadJob",
                      //: Progress bar (70 letters; CJK 40): an update has failed, the unit has
                      //: reported an error. DFU is the USB standard for firmware updates. Stands
                      //: for %1 in "Caught USB exception: %1".
                      "Error state while downloading to Aquen/Solvar in \"DFU\" mode.");

// Ends a run in which the unit has reported an unexpected status or state.
class BadStateException : public USB::USBException
{
public:
    BadStateException()
        : USB::USBException(QString::fromLatin1(badState))
    {
    }
};

} // namespace

DFUDownloadJob::DFUDownloadJob(QByteArray data, QSharedPointer<DfuDevice> device,
                               int maxFirmwareSize)
    : m_device(std::move(device))
    , m_data(std::move(data))
    , m_maxFirmwareSize(maxFirmwareSize)
{
    moveToThread(this);
    setObjectName(QStringLiteral("dfuDownloadJob"));
}

DFUDownloadJob::~DFUDownloadJob() = default;

void DFUDownloadJob::start()
{
    // Not in run(): that would undo a stop that comes before the new thread gets there.
    m_stopRequested = false;
    QThread::start(QThread::InheritPriority);
}

void DFUDownloadJob::stop()
{
    requestStop();
    if (wait(static_cast<unsigned long>(stopWait.count())))
        return;
    QLOG_ERROR() << "timed out while closing";
    if (m_device)
        m_device->abortTransfers();
    if (!wait(abortWaitMs))
        QLOG_ERROR() << "The download did not end; it is left to end by itself.";
}

void DFUDownloadJob::run()
{
    //: Shown by the desktop as the reason why the computer does not go to sleep: a sentence.
    const SleepInhibitor awake(tr("A unit's firmware is being updated."));
    try {
        flash();
    } catch (const BadStateException& exception) {
        reportException(exception.message(), tr(badState));
    } catch (const USB::USBException& exception) {
        // The messages of the USB layer have no translation.
        reportException(exception.message(), exception.message());
    }
}

void DFUDownloadJob::flash()
{
    if (prepare() == Outcome::Ended)
        return;
    quint32 address = m_device->flashStartAddress();
    int offset = 0;
    while (offset < m_data.size() && !m_stopRequested) {
        if (writeChunk(address, offset) == Outcome::Ended)
            return;
        offset += m_transferSize;
        address += m_transferSize;
    }
    QLOG_INFO() << "File successfully downloaded.";
    if (!m_stopRequested)
        finish(address);
}

DFUDownloadJob::Outcome DFUDownloadJob::prepare()
{
    if (m_data.size() >= m_maxFirmwareSize)
        //: Progress bar (70 letters; CJK 40): the firmware file is larger than the memory of the
        //: unit; nothing was written.
        return failWith(QT_TR_NOOP("Too much data to complete upload."));
    if (!m_device) {
        QLOG_ERROR() << "No device, fail";
        //: Progress bar (70 letters; CJK 40): there is no unit to write to.
        return failWith(QT_TR_NOOP("No device to update."));
    }
    m_transferSize = m_device->transferSize();
    if (!m_device->dfuGetStatus()) {
        QLOG_ERROR() << "Failed to read DFU device status.";
        return failWith(readStatusFailed);
    }
    if (m_device->state() == DFU_STATE_ERROR) {
        QLOG_INFO() << "Clearing error state!";
        if (!m_device->dfuClearStatus()) {
            QLOG_ERROR() << "Failed to clear device error state.";
            //: Progress bar (70 letters; CJK 40): an update has failed, the unit keeps reporting
            //: an earlier error. No data of the user is meant.
            return failWith(QT_TR_NOOP("Failed to clear device status."));
        }
    }
    warnOfSmallTransferSize();
    return Outcome::Continue;
}

void DFUDownloadJob::warnOfSmallTransferSize() const
{
    const quint32 pageSize = m_device->segmentForAddress(m_device->flashStartAddress()).pageSize;
    if (m_transferSize < pageSize)
        QLOG_WARN() << "Transfer size" << m_transferSize << "is smaller than the page size"
                    << pageSize << ": each chunk erases the one before it in its page.";
}

DFUDownloadJob::Outcome DFUDownloadJob::writeChunk(quint32 address, int offset)
{
    if (m_transferSize == 0) {
        // Only an empty download could be sent, which would start the unfinished firmware.
        QLOG_ERROR() << "The device takes no data: its transfer size is 0.";
        return failWith(uploadDataFailed);
    }
    if (erase(address) == Outcome::Ended)
        return Outcome::Ended;
    if (m_stopRequested)
        return Outcome::Continue;
    if (!m_device->dfuSpecialCommand(address, SET_ADDRESS)) {
        QLOG_ERROR() << "Failed to set address for data chunk:" << address;
        //: Progress bar (70 letters; CJK 40): an update has failed, the unit did not take the
        //: address of the next piece.
        return failWith(QT_TR_NOOP("Failed to upload firmware."));
    }
    if (awaitAddressSet() == Outcome::Ended)
        return Outcome::Ended;
    // The last check before the chunk is sent: a stop while the unit writes it is a bad state.
    if (m_stopRequested)
        return Outcome::Continue;
    const QByteArray chunk = m_data.mid(offset, m_transferSize);
    if (!m_device->dfuDownload(dataBlock, chunk)) {
        QLOG_ERROR() << "Failed to upload data chunk";
        return failWith(uploadDataFailed);
    }
    if (awaitChunkWritten() == Outcome::Ended)
        return Outcome::Ended;
    m_imageSent = offset + m_transferSize >= m_data.size();
    emit uploadProgress(static_cast<float>(offset) / static_cast<float>(m_data.size()));
    return Outcome::Continue;
}

DFUDownloadJob::Outcome DFUDownloadJob::erase(quint32 address)
{
    const quint32 pageSize = m_device->segmentForAddress(address).pageSize;
    if (pageSize == 0) {
        QLOG_ERROR() << "No flash page at address" << address;
        return failWith(eraseFailed);
    }
    const quint64 end = quint64(address) + m_transferSize;
    for (quint64 page = address; page < end && !m_stopRequested; page += pageSize) {
        if (!m_device->dfuSpecialCommand(quint32(page), ERASE_PAGE)) {
            QLOG_ERROR() << "Failed to erase page";
            return failWith(eraseFailed);
        }
    }
    return Outcome::Continue;
}

DFUDownloadJob::Outcome DFUDownloadJob::awaitAddressSet()
{
    do {
        if (!m_device->poll()) {
            QLOG_ERROR() << "Failed to get device status.";
            //: Progress bar (70 letters; CJK 40): an update has failed, the unit did not respond
            //: before it wrote a sector, a part of its memory.
            return failWith(QT_TR_NOOP("Failed to flash device sector."));
        }
    } while (m_device->state() == DFU_STATE_DNBUSY && !m_stopRequested);
    if (m_device->status() != DFU_STATUS_OK) {
        QLOG_ERROR() << "Device in bad state (expected OK, got" << statusName(m_device->status())
                     << ")";
        //: Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an
        //: error before a piece was written.
        failInBadState(QT_TR_NOOP("Error while flashing firmware."));
    }
    return Outcome::Continue;
}

DFUDownloadJob::Outcome DFUDownloadJob::awaitChunkWritten()
{
    do {
        if (!m_device->poll()) {
            QLOG_ERROR() << "Failed to read device status.";
            return failWith(readStatusFailed);
        }
    } while (m_device->state() == DFU_STATE_DNBUSY && !m_stopRequested);
    if (m_device->state() != DFU_STATE_DNLOAD_IDLE) {
        QLOG_ERROR() << "Hm, something went wrong!";
        //: Progress bar (70 letters; CJK 40): an update has failed, the unit has reported an
        //: error after a piece was sent.
        failInBadState(QT_TR_NOOP("Error state while flashing firmware."));
    }
    return Outcome::Continue;
}

void DFUDownloadJob::finish(quint32 address)
{
    if (!m_device->dfuSpecialCommand(address, SET_ADDRESS)) {
        QLOG_ERROR() << "Failed to set final address.";
        failWith(finalizeFailed);
        return;
    }
    if (!m_device->dfuDownload(dataBlock, QByteArray())) {
        QLOG_ERROR() << "Failed to write empty bytes to finish flashing.";
        failWith(finalizeFailed);
        return;
    }
    // At least one read, even after a stop: the first read makes the unit start the new firmware.
    qint32 state = DFU_STATE_ERROR;
    do {
        QCoreApplication::processEvents();
        if (!m_device->dfuGetStatus()) {
            QLOG_ERROR() << "Failed to read DFU status.";
            failWith(readStatusFailed);
            return;
        }
        state = m_device->state();
    } while (state != DFU_STATE_DNLOAD_IDLE && state != DFU_STATE_ERROR &&
             state != DFU_STATE_MANIFEST && !m_stopRequested);
    if (state == DFU_STATE_MANIFEST)
        QLOG_INFO() << "Transitioning to dfuMANIFEST state";
    else
        QLOG_INFO() << "state" << stateName(state);
    emit uploadFinished();
}

DFUDownloadJob::Outcome DFUDownloadJob::failWith(const char* source)
{
    emit uploadError(tr(source), QString::fromLatin1(source));
    return Outcome::Ended;
}

void DFUDownloadJob::failInBadState(const char* source)
{
    failWith(source);
    throw BadStateException();
}

void DFUDownloadJob::reportException(const QString& message, const QString& translatedMessage)
{
    QLOG_ERROR() << "Caught USB exception" << qUtf8Printable(message);
    //: Progress bar (70 letters; CJK 40): an update has failed. %1 is what failed, nearly always
    //: in English, for example "control write error: LIBUSB_ERROR_NO_DEVICE".
    const char* source = QT_TR_NOOP("Caught USB exception: %1");
    emit uploadError(tr(source).arg(translatedMessage), QString::fromLatin1(source).arg(message));
}

} // namespace AquenSolvar::Device
