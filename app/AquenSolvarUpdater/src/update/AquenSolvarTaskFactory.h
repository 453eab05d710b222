#pragma once

#include "devices/AquenSolvarDfuDevice.h"
#include "update/AquenSolvarFirmwareUpdateTask.h"

#include <QObject>

namespace AquenSolvar {

/// Makes update tasks for the user interface. GUI thread.
class AquenSolvarTaskFactory : public QObject
{
    Q_OBJECT

public:
    explicit AquenSolvarTaskFactory(QObject* parent = nullptr);

    /// A task, without parent, for the unit of that bootloader; the caller (QML) owns it. Without a
    /// device the task has no unit, and its upload fails.
    Q_INVOKABLE AquenSolvar::Tasks::AquenSolvarFirmwareUpdateTask*
    makeFirmwareUploadTask(AquenSolvar::Device::AquenSolvarDfuDevice* device);

    /// The pause between status reads, and their time-out, in tasks made from now on.
    void setPollSleep(std::chrono::milliseconds sleep) { m_pollSleep = sleep; }
    void setStatusTimeout(std::chrono::milliseconds timeout) { m_statusTimeout = timeout; }

private:
    std::chrono::milliseconds m_pollSleep = Device::DfuDevice::defaultPollSleep;
    std::chrono::milliseconds m_statusTimeout = Device::DfuDevice::defaultStatusTimeout;
};

} // namespace AquenSolvar
