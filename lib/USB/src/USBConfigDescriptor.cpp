// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/USBConfigDescriptor.h"

namespace USB {

USBConfigDescriptor::USBConfigDescriptor(libusb_config_descriptor* configuration)
    : m_configuration(configuration, &libusb_free_config_descriptor)
{
}

USBConfigDescriptor::~USBConfigDescriptor() = default;

QList<USBInterface> USBConfigDescriptor::interfaces() const
{
    QList<USBInterface> all;
    const int count = m_configuration ? m_configuration->bNumInterfaces : 0;
    for (int i = 0; i < count; ++i)
        all.append(USBInterface(m_configuration, m_configuration->interface[i]));
    return all;
}

} // namespace USB
