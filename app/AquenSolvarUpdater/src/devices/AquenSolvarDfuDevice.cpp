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
    //: Heading in the list of units (45 letters; CJK 27): units in their bootloader, which wait
    //: for an update. DFU is the USB standard for firmware updates.
    return tr("DFU Devices");
}

} // namespace AquenSolvar::Device
