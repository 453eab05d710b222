// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "dfu/DfuDevice.h"

#include <QByteArray>
#include <QSharedPointer>
#include <QThread>

#include <atomic>
#include <chrono>

namespace AquenSolvar::Device {

/// Writes one firmware image into a unit whose bootloader runs, on its own thread. For each
/// chunk of the unit's transfer size it erases flash, sets the address and writes; at the end a
/// zero-length download makes the unit start the new firmware (DfuSe application note). Runs once.
/// Every failure ends the run: the job neither retries nor resets the unit's status.
///
/// The object lives on its own thread, so its signals arrive queued. start() and stop() are called
/// on the GUI thread. A running job must not be deleted.
class DFUDownloadJob : public QThread
{
    Q_OBJECT

public:
    /// How long stop() waits before it cancels the pending transfer.
    static constexpr std::chrono::milliseconds stopWait{2000};

    /// @param maxFirmwareSize exclusive upper bound of the image's length in bytes
    DFUDownloadJob(QByteArray data, QSharedPointer<DfuDevice> device, int maxFirmwareSize);
    ~DFUDownloadJob() override;

    /// Starts the run. A stop before it does not count; a later one always does.
    void start();

    /// Requests the end of the run between two USB transfers and waits at most stopWait for it.
    /// After that it cancels the pending transfer and waits 1 s more; the thread is never
    /// terminated, since libusb's locks would stay taken. Does nothing if no run is active.
    void stop();

    /// Requests the end of the run and returns at once. Any thread.
    void requestStop() { m_stopRequested = true; }

    /// Whether the unit has received the whole image. It can then start the new firmware, even if
    /// the run fails or is stopped. Any thread.
    bool isImageSent() const { return m_imageSent; }

signals:
    /// A failure. Some failures are reported by two signals in a row.
    /// @param errorString the text in the language of the user interface
    /// @param source the same text in English, for the log
    void uploadError(QString errorString, QString source);
    /// @param percent a fraction from 0 to 1, despite its name; 1 itself is never reported
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
    Outcome failWith(const char* source);
    [[noreturn]] void failInBadState(const char* source);
    void reportException(const QString& message, const QString& translatedMessage);

    QSharedPointer<DfuDevice> m_device;
    QByteArray m_data;
    std::atomic<bool> m_stopRequested{false};
    std::atomic<bool> m_imageSent{false};
    qint32 m_maxFirmwareSize;
    quint16 m_transferSize = 0;
};

} // namespace AquenSolvar::Device
