// SPDX-License-Identifier: LicenseRef-Proprietary
#include "update/AquenSolvarTaskFactory.h"

#include "qslog/Log.h"

namespace AquenSolvar {

AquenSolvarTaskFactory::AquenSolvarTaskFactory(QObject* parent)
    : QObject(parent)
{
}

Tasks::AquenSolvarFirmwareUpdateTask*
AquenSolvarTaskFactory::makeFirmwareUploadTask(Device::AquenSolvarDfuDevice* device)
{
    if (device == nullptr)
        QLOG_ERROR() << "Asked for an update task without a device";
    return new Tasks::AquenSolvarFirmwareUpdateTask(
        device != nullptr ? device->record() : USB::P_LibUsbDevice(), m_times);
}

} // namespace AquenSolvar
