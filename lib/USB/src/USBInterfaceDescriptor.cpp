// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/USBInterfaceDescriptor.h"

namespace USB {

USBInterfaceDescriptor::USBInterfaceDescriptor(
    std::shared_ptr<const libusb_config_descriptor> configuration,
    const libusb_interface_descriptor& descriptor)
    : m_configuration(std::move(configuration))
    , m_descriptor(&descriptor)
{
}

USBInterfaceDescriptor::~USBInterfaceDescriptor() = default;

QList<USBEndpointDescriptor> USBInterfaceDescriptor::endpoints() const
{
    QList<USBEndpointDescriptor> all;
    for (int i = 0; i < m_descriptor->bNumEndpoints; ++i)
        all.append(USBEndpointDescriptor(m_configuration, m_descriptor->endpoint[i]));
    return all;
}

} // namespace USB
