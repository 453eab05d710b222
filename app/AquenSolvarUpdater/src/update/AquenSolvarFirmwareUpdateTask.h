// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibUsbDevice.h"
#include "USB/USBException.h"
#include "update/DFUDownloadJob.h"

#include <QElapsedTimer>
#include <QEnableSharedFromThis>
#include <QObject>

#include <optional>

namespace AquenSolvar::Tasks {

/// One firmware update of one unit whose bootloader runs: opens the unit, picks the newest shipped
/// firmware, unless one is given, and flashes it on another thread. Main thread; in the window
/// owned by QML. Destruction does not stop a running download.
class AquenSolvarFirmwareUpdateTask : public QObject,
                                      public QEnableSharedFromThis<AquenSolvarFirmwareUpdateTask>
{
    Q_OBJECT
    Q_PROPERTY(float progress READ progress NOTIFY progressChanged)

public:
    /// A placeholder without a unit.
    explicit AquenSolvarFirmwareUpdateTask(QObject* parent = nullptr);
    explicit AquenSolvarFirmwareUpdateTask(USB::P_LibUsbDevice record, Device::DfuTimes times = {});
    ~AquenSolvarFirmwareUpdateTask() override;

    /// The last reported fraction, from 0 to 1.
    float progress() const { return m_progress; }

    /// The firmware to flash instead of the newest shipped one. Before uploadFirmware().
    void setFirmware(const Device::FirmwareBundle& bundle);

    /// Opens the unit and starts the download.
    /// @return true if a download was started. False, with a log line and without a signal, if
    ///         there is no unit, it cannot be set up, or no firmware was shipped for it.
    Q_INVOKABLE bool uploadFirmware();

    /// Stops a running download, see DFUDownloadJob::stop(). Blocks for at most 3 s.
    Q_INVOKABLE void stopUpdate();

    /// Requests the end of a running download, see DFUDownloadJob::requestStop().
    void requestStop();

    /// Whether the unit has received the whole image, see DFUDownloadJob::isImageSent().
    bool isImageSent() const { return m_job && m_job->isImageSent(); }

    /// Why the last uploadFirmware() could not set up the unit; empty if it could.
    const std::optional<USB::USBException>& setUpError() const { return m_setUpError; }

    /// Sets the progress to 0 and emits progressChanged(), even if it is 0 already.
    Q_INVOKABLE void resetProgress();

signals:
    void uploadFinsihed(); // the user interface connects to this spelling
    void uploadError(QString errorString);
    void progressChanged();
    /// The download has ended, in whatever way, and the unit is closed.
    void downloadEnded();

public slots:
    void on_DFUDownloadJob_uploadProgress(float progress);
    void on_DFUDownloadJob_uploadFinished();
    /// @param source the text in English, for the log
    void on_DFUDownloadJob_uploadError(const QString& errorString, const QString& source);

private:
    bool openDevice();
    void startJob(const QByteArray& image);
    void on_DFUDownloadJob_finished();

    USB::P_LibUsbDevice m_record;
    QSharedPointer<Device::DFUDownloadJob> m_job;
    QSharedPointer<Device::DfuDevice> m_device;
    // Given by setFirmware(). A shipped image goes straight to the job.
    qint32 m_firmwareVersion = 0;
    QByteArray m_firmware;
    std::optional<USB::USBException> m_setUpError;
    float m_progress = 0;
    Device::DfuTimes m_times;
    QElapsedTimer m_elapsed;
};

} // namespace AquenSolvar::Tasks
