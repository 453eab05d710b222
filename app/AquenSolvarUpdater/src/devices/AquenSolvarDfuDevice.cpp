// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/AquenSolvarDfuDevice.h"

#include "devices/UnitKind.h"

namespace AquenSolvar::Device {

AquenSolvarDfuDevice::AquenSolvarDfuDevice(USB::P_LibUsbDevice record)
    : m_record(std::move(record))
{
    const UnitKind* kind = m_record ? unitKindOf(m_record->descriptor.idProduct) : nullptr;
    if (kind == nullptr || !kind->dfu)
        return;
    m_deviceType = kind->type;
    m_serialName = QString::fromLatin1(kind->serialName);
}

QString AquenSolvarDfuDevice::sectionName() const
{
    return tr("DFU Devices");
}

} // namespace AquenSolvar::Device
