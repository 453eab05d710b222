// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "devices/AquenSolvarDfuDevice.h"
#include "update/AquenSolvarFirmwareUpdateTask.h"

#include <QObject>

namespace AquenSolvar {

/// Creates update tasks for the user interface. GUI thread.
class AquenSolvarTaskFactory : public QObject
{
    Q_OBJECT

public:
    explicit AquenSolvarTaskFactory(QObject* parent = nullptr);

    /// Creates a task without parent for the unit of @p device; the caller (QML) owns it. If
    /// @p device is null, the task has no unit and its upload fails.
    Q_INVOKABLE AquenSolvar::Tasks::AquenSolvarFirmwareUpdateTask*
    makeFirmwareUploadTask(AquenSolvar::Device::AquenSolvarDfuDevice* device);

    /// The times of tasks made from now on.
    void setTimes(Device::DfuTimes times) { m_times = times; }

private:
    Device::DfuTimes m_times;
};

} // namespace AquenSolvar
