#pragma once

#include "USB/LibUsbDevice.h"
#include "update/DFUDownloadJob.h"

#include <QElapsedTimer>
#include <QEnableSharedFromThis>
#include <QObject>

namespace AquenSolvar::Tasks {

/// One firmware update of one unit that is in its bootloader, as the user interface drives it:
/// opens the unit, picks the newest shipped firmware and flashes it on a thread of its own. GUI
/// thread; usually owned by QML. Destruction does not stop a running download: it goes on by
/// itself.
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

    /// The last reported fraction, 0 to 1.
    float progress() const { return m_progress; }

    /// Opens the unit and starts the download.
    /// @return true when a download was started; false, with a log line and without a signal, when
    ///         there is no unit, it cannot be set up, or no firmware was shipped for it.
    Q_INVOKABLE bool uploadFirmware();

    /// Ends a running download, blocking for up to 3 s; nothing happens without one.
    Q_INVOKABLE void stopUpdate();

    /// Sets the progress to 0 and says so, whatever it was.
    Q_INVOKABLE void resetProgress();

signals:
    void uploadFinsihed(); // spelled so; the user interface connects to this name
    void uploadError(QString errorString);
    void progressChanged();

public slots:
    void on_DFUDownloadJob_uploadProgress(float progress);
    void on_DFUDownloadJob_uploadFinished();
    void on_DFUDownloadJob_uploadError(const QString& errorString);

private:
    bool openDevice();
    void startJob(const QByteArray& image);
    void on_DFUDownloadJob_finished();

    USB::P_LibUsbDevice m_record;
    QSharedPointer<Device::DFUDownloadJob> m_job;
    QSharedPointer<Device::DfuDevice> m_device;
    qint32 m_firmwareVersion = 0;
    QByteArray m_firmware;
    float m_progress = 0;
    Device::DfuTimes m_times;
    QElapsedTimer m_elapsed;
};

} // namespace AquenSolvar::Tasks
