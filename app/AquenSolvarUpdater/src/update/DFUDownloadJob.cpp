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

// How long a transfer that was called off may take to come back.
constexpr unsigned long abortWaitMs = 1000;

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
    const SleepInhibitor awake(tr("A unit's firmware is being updated."));
    try {
        flash();
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "Caught USB exception" << exception.what();
        // The USB layer's own messages stay English; the job's own is translated here.
        emit uploadError(tr("Caught USB exception: %1").arg(tr(exception.what())));
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
        if (m_stopRequested)
            break;
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
        return failWith(tr("Too much data to complete upload."));
    if (!m_device) {
        QLOG_ERROR() << "No device, fail";
        return failWith(tr("No device to update."));
    }
    m_transferSize = m_device->transferSize();
    if (!m_device->dfuGetStatus()) {
        QLOG_ERROR() << "Failed to read DFU device status.";
        return failWith(tr("Failed to read device status."));
    }
    if (m_device->state() == DFU_STATE_ERROR) {
        QLOG_INFO() << "Clearing error state!";
        if (!m_device->dfuClearStatus()) {
            QLOG_ERROR() << "Failed to clear device error state.";
            return failWith(tr("Failed to clear device status."));
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
        // Nothing could be sent but an empty download, which would start the unfinished firmware.
        QLOG_ERROR() << "The device takes no data: its transfer size is 0.";
        return failWith(tr("Failed to upload firmware data."));
    }
    if (erase(address) == Outcome::Ended)
        return Outcome::Ended;
    if (m_stopRequested)
        return Outcome::Continue;
    if (!m_device->dfuSpecialCommand(address, SET_ADDRESS)) {
        QLOG_ERROR() << "Failed to set address for data chunk:" << address;
        return failWith(tr("Failed to upload firmware."));
    }
    if (awaitAddressSet() == Outcome::Ended)
        return Outcome::Ended;
    // The last place at which a stop is no error: in the wait for a chunk it ends in a bad state.
    if (m_stopRequested)
        return Outcome::Continue;
    const QByteArray chunk = m_data.mid(offset, m_transferSize);
    if (!m_device->dfuDownload(dataBlock, chunk)) {
        QLOG_ERROR() << "Failed to upload data chunk";
        return failWith(tr("Failed to upload firmware data."));
    }
    if (awaitChunkWritten() == Outcome::Ended)
        return Outcome::Ended;
    emit uploadProgress(static_cast<float>(offset) / static_cast<float>(m_data.size()));
    return Outcome::Continue;
}

DFUDownloadJob::Outcome DFUDownloadJob::erase(quint32 address)
{
    const quint32 pageSize = m_device->segmentForAddress(address).pageSize;
    if (pageSize == 0) {
        QLOG_ERROR() << "No flash page at address" << address;
        return failWith(tr("Failed to erase flash."));
    }
    const quint64 end = quint64(address) + m_transferSize;
    for (quint64 page = address; page < end && !m_stopRequested; page += pageSize) {
        if (!m_device->dfuSpecialCommand(quint32(page), ERASE_PAGE)) {
            QLOG_ERROR() << "Failed to erase page";
            return failWith(tr("Failed to erase flash."));
        }
    }
    return Outcome::Continue;
}

DFUDownloadJob::Outcome DFUDownloadJob::awaitAddressSet()
{
    do {
        if (!m_device->poll()) {
            QLOG_ERROR() << "Failed to get device status.";
            return failWith(tr("Failed to flash device sector."));
        }
    } while (m_device->state() == DFU_STATE_DNBUSY && !m_stopRequested);
    if (m_device->status() != DFU_STATUS_OK) {
        QLOG_ERROR() << "Device in bad state (expected OK, got" << statusName(m_device->status())
                     << ")";
        failInBadState(tr("Error while flashing firmware."));
    }
    return Outcome::Continue;
}

DFUDownloadJob::Outcome DFUDownloadJob::awaitChunkWritten()
{
    do {
        if (!m_device->poll()) {
            QLOG_ERROR() << "Failed to read device status.";
            return failWith(tr("Failed to read device status."));
        }
    } while (m_device->state() == DFU_STATE_DNBUSY && !m_stopRequested);
    if (m_device->state() != DFU_STATE_DNLOAD_IDLE) {
        QLOG_ERROR() << "Hm, something went wrong!";
        failInBadState(tr("Error state while flashing firmware."));
    }
    return Outcome::Continue;
}

void DFUDownloadJob::finish(quint32 address)
{
    if (!m_device->dfuSpecialCommand(address, SET_ADDRESS)) {
        QLOG_ERROR() << "Failed to set final address.";
        failWith(tr("Failed to finalize firmware flashing."));
        return;
    }
    if (!m_device->dfuDownload(dataBlock, QByteArray())) {
        QLOG_ERROR() << "Failed to write empty bytes to finish flashing.";
        failWith(tr("Failed to finalize firmware flashing."));
        return;
    }
    // At least one read, even after a stop: the unit starts the new firmware at the first.
    qint32 state = DFU_STATE_ERROR;
    do {
        QCoreApplication::processEvents();
        if (!m_device->dfuGetStatus()) {
            QLOG_ERROR() << "Failed to read DFU status.";
            failWith(tr("Failed to read device status."));
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

DFUDownloadJob::Outcome DFUDownloadJob::failWith(const QString& userText)
{
    emit uploadError(userText);
    return Outcome::Ended;
}

void DFUDownloadJob::failInBadState(const QString& userText)
{
    emit uploadError(userText);
    throw USB::USBException(
        QStringLiteral("Error state while downloading to Aquen/Solvar in \"DFU\" mode."));
}

} // namespace AquenSolvar::Device
