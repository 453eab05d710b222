#pragma once

#include "dfu/DfuDevice.h"

#include <QByteArray>
#include <QSharedPointer>
#include <QThread>

#include <atomic>
#include <chrono>

namespace AquenSolvar::Device {

/// Writes one firmware image into a unit that is in its bootloader, on a thread of its own: for
/// each chunk of the unit's transfer size it erases, sets the address and writes; a zero-length
/// download at the end makes the unit start the new firmware. Runs once. Every failure ends the
/// run, nothing is retried, and nothing is cleaned up on the unit.
///
/// The object belongs to its own thread, so its signals arrive queued. start() and stop() are
/// called on the GUI thread. A running job must not be deleted.
class DFUDownloadJob : public QThread
{
    Q_OBJECT

public:
    /// How long stop() waits for a run to end by itself.
    static constexpr std::chrono::milliseconds stopWait{2000};

    /// @param maxFirmwareSize exclusive upper bound of the image's length in bytes
    DFUDownloadJob(QByteArray data, QSharedPointer<DfuDevice> device, int maxFirmwareSize);
    ~DFUDownloadJob() override;

    /// Asks the run to end between two USB exchanges and waits at most 2000 ms for it. If it does
    /// not end, calls off the transfer in flight: a thread that is terminated inside libusb would
    /// leave libusb's locks taken. May be called when nothing runs.
    void stop();

    /// Asks the run to end and does not wait.
    void requestStop() { m_stopRequested = true; }

signals:
    /// One of the user-visible texts; some failures give two in a row.
    void uploadError(QString errorString);
    /// Despite its name a fraction from 0 to 1; 1 itself is never reported.
    void uploadProgress(float percent);
    void uploadFinished();

protected:
    void run() override;

private:
    enum class Outcome
    {
        Continue,
        Ended
    };

    void flash();
    void warnOfSmallTransferSize() const;
    Outcome prepare();
    Outcome writeChunk(quint32 address, int offset);
    Outcome erase(quint32 address);
    Outcome awaitAddressSet();
    Outcome awaitChunkWritten();
    void finish(quint32 address);
    Outcome failWith(const QString& userText);
    [[noreturn]] void failInBadState(const QString& userText);

    QSharedPointer<DfuDevice> m_device;
    QByteArray m_data;
    std::atomic<bool> m_stopRequested{false};
    qint32 m_maxFirmwareSize;
    quint16 m_transferSize = 0;
};

} // namespace AquenSolvar::Device
