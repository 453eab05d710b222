// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibUsbDevice.h"
#include "update/DFUDownloadJob.h"

#include <QElapsedTimer>
#include <QEnableSharedFromThis>
#include <QObject>

namespace AquenSolvar::Tasks {

/// One firmware update of one unit whose bootloader runs, for the user interface: opens the unit,
/// picks the newest shipped firmware and flashes it on another thread. GUI thread; usually
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

    /// Opens the unit and starts the download.
    /// @return true if a download was started. False, with a log line and without a signal, if
    ///         there is no unit, it cannot be set up, or no firmware was shipped for it.
    Q_INVOKABLE bool uploadFirmware();

    /// Stops a running download, see DFUDownloadJob::stop(). Blocks for at most 3 s.
    Q_INVOKABLE void stopUpdate();

    /// Sets the progress to 0 and emits progressChanged(), even if it is 0 already.
    Q_INVOKABLE void resetProgress();

signals:
    void uploadFinsihed(); // the user interface connects to this spelling
    void uploadError(QString errorString);
    void progressChanged();

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
    // Part of the task's data model, but not written: the chosen image goes straight to the job.
    qint32 m_firmwareVersion = 0;
    QByteArray m_firmware;
    float m_progress = 0;
    Device::DfuTimes m_times;
    QElapsedTimer m_elapsed;
};

} // namespace AquenSolvar::Tasks
