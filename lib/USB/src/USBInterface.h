// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/USBInterfaceDescriptor.h"

#include <QList>

namespace USB {

/// Read access to one interface of a configuration: its alternate settings in descriptor order.
/// Keeps its configuration alive. Any thread.
class USBInterface
{
public:
    USBInterface(std::shared_ptr<const libusb_config_descriptor> configuration,
                 const libusb_interface& interface);
    virtual ~USBInterface();

    QList<USBInterfaceDescriptor> alternateSettings() const;

private:
    std::shared_ptr<const libusb_config_descriptor> m_configuration;
    const libusb_interface* m_interface;
};

} // namespace USB
