#pragma once

#include "AquenSolvarDfuDevice.h"
#include "AquenSolvarFirmwareUpdateTask.h"

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
};

} // namespace AquenSolvar
