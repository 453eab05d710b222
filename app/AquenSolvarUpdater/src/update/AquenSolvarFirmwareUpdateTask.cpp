// SPDX-License-Identifier: LicenseRef-Proprietary
#include "update/AquenSolvarFirmwareUpdateTask.h"

#include "USB/USBException.h"
#include "devices/UnitKind.h"
#include "firmware/ImageSize.h"
#include "qslog/Log.h"
#include "update/DetachedJob.h"

namespace AquenSolvar::Tasks {

namespace {

QString describe(const USB::LibUsbDevice& record)
{
    const Device::UnitKind* kind = Device::unitKindOf(record.descriptor.idProduct);
    return QStringLiteral("%1 on port %2")
        .arg(QLatin1String(kind != nullptr ? kind->name : "unknown unit"), USB::portPath(record));
}

} // namespace

AquenSolvarFirmwareUpdateTask::AquenSolvarFirmwareUpdateTask(QObject* parent)
    : QObject(parent)
{
}

AquenSolvarFirmwareUpdateTask::AquenSolvarFirmwareUpdateTask(USB::P_LibUsbDevice record,
                                                             Device::DfuTimes times)
    : m_record(std::move(record))
    , m_times(times)
{
}

AquenSolvarFirmwareUpdateTask::~AquenSolvarFirmwareUpdateTask()
{
    m_firmware.clear();
    m_device.reset();
    m_job.reset();
    m_record.reset();
}

void AquenSolvarFirmwareUpdateTask::setFirmware(const Device::FirmwareBundle& bundle)
{
    m_firmwareVersion = bundle.version;
    m_firmware = bundle.data;
}

bool AquenSolvarFirmwareUpdateTask::uploadFirmware()
{
    if (!openDevice()) {
        QLOG_ERROR() << "Failed to set up USB device...";
        return false;
    }
    const Device::FirmwareBundle bundle =
        m_firmware.isEmpty() ? m_device->getBundledTarnwareUpdate()
                             : Device::FirmwareBundle{m_firmwareVersion, m_firmware};
    if (bundle.data.isEmpty()) {
        QLOG_ERROR() << "No firmware update to apply";
        m_device->close();
        return false;
    }
    QLOG_INFO() << "Flashing" << describe(*m_record) << "with bundle version" << bundle.version
                << "," << bundle.data.size() << "bytes";
    startJob(bundle.data);
    return true;
}

bool AquenSolvarFirmwareUpdateTask::openDevice()
{
    m_device.reset();
    m_setUpError.reset();
    if (!m_record) {
        QLOG_ERROR() << "There is no unit to update.";
        return false;
    }
    try {
        m_device = QSharedPointer<Device::DfuDevice>(new Device::DfuDevice(m_record, m_times),
                                                     &QObject::deleteLater);
        m_device->init();
        m_device->setAlternateSetting(0);
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "Could not open" << describe(*m_record) << ":" << exception.what();
        m_setUpError = exception;
        if (m_device)
            m_device->close();
        return false;
    }
    return true;
}

void AquenSolvarFirmwareUpdateTask::startJob(const QByteArray& image)
{
    using Device::DFUDownloadJob;
    m_job = QSharedPointer<DFUDownloadJob>(
        new DFUDownloadJob(image, m_device, Device::imageSizeBound), &Device::DetachedJob::release);
    connect(m_job.data(), &DFUDownloadJob::uploadError, this,
            &AquenSolvarFirmwareUpdateTask::on_DFUDownloadJob_uploadError);
    connect(m_job.data(), &DFUDownloadJob::uploadFinished, this,
            &AquenSolvarFirmwareUpdateTask::on_DFUDownloadJob_uploadFinished);
    connect(m_job.data(), &DFUDownloadJob::uploadProgress, this,
            &AquenSolvarFirmwareUpdateTask::on_DFUDownloadJob_uploadProgress);
    connect(m_job.data(), &QThread::finished, this,
            &AquenSolvarFirmwareUpdateTask::on_DFUDownloadJob_finished);
    m_elapsed.start();
    m_job->start();
}

void AquenSolvarFirmwareUpdateTask::stopUpdate()
{
    if (m_job)
        m_job->stop();
}

void AquenSolvarFirmwareUpdateTask::requestStop()
{
    if (m_job)
        m_job->requestStop();
}

void AquenSolvarFirmwareUpdateTask::resetProgress()
{
    m_progress = 0;
    emit progressChanged();
}

void AquenSolvarFirmwareUpdateTask::on_DFUDownloadJob_uploadProgress(float progress)
{
    QLOG_INFO() << "Progress: " << progress * 100;
    m_progress = progress;
    emit progressChanged();
}

void AquenSolvarFirmwareUpdateTask::on_DFUDownloadJob_uploadFinished()
{
    QLOG_INFO() << "DFU download finished!";
    emit uploadFinsihed();
}

void AquenSolvarFirmwareUpdateTask::on_DFUDownloadJob_uploadError(const QString& errorString,
                                                                  const QString& source)
{
    QLOG_ERROR() << "Firmware download error:" << source;
    emit uploadError(errorString);
}

void AquenSolvarFirmwareUpdateTask::on_DFUDownloadJob_finished()
{
    QLOG_INFO() << "The download to" << describe(*m_record) << "ended after" << m_elapsed.elapsed()
                << "ms";
    // The interface must be free before the next attempt, which another task may make while this
    // one still exists.
    if (m_job && m_job->isFinished() && m_device)
        m_device->close();
    emit downloadEnded();
}

} // namespace AquenSolvar::Tasks
