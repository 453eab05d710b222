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
    auto* task = new Tasks::AquenSolvarFirmwareUpdateTask(
        device != nullptr ? device->record() : USB::P_LibUsbDevice());
    task->setPollSleep(m_pollSleep);
    task->setStatusTimeout(m_statusTimeout);
    return task;
}

} // namespace AquenSolvar
