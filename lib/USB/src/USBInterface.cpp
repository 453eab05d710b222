// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/USBInterface.h"

namespace USB {

USBInterface::USBInterface(std::shared_ptr<const libusb_config_descriptor> configuration,
                           const libusb_interface& interface)
    : m_configuration(std::move(configuration))
    , m_interface(&interface)
{
}

USBInterface::~USBInterface() = default;

QList<USBInterfaceDescriptor> USBInterface::alternateSettings() const
{
    QList<USBInterfaceDescriptor> all;
    for (int i = 0; i < m_interface->num_altsetting; ++i)
        all.append(USBInterfaceDescriptor(m_configuration, m_interface->altsetting[i]));
    return all;
}

} // namespace USB
