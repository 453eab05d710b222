// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/USBEndpointDescriptor.h"

#include <QList>

namespace USB {

/// Read access to one alternate setting of an interface (USB 2.0, 9.6.5). Keeps its configuration
/// alive. Any thread.
class USBInterfaceDescriptor
{
public:
    USBInterfaceDescriptor(std::shared_ptr<const libusb_config_descriptor> configuration,
                           const libusb_interface_descriptor& descriptor);
    virtual ~USBInterfaceDescriptor();

    quint8 interfaceNumber() const { return m_descriptor->bInterfaceNumber; }
    quint8 alternateSetting() const { return m_descriptor->bAlternateSetting; }
    quint8 interfaceClass() const { return m_descriptor->bInterfaceClass; }
    quint8 interfaceSubClass() const { return m_descriptor->bInterfaceSubClass; }
    quint8 interfaceProtocol() const { return m_descriptor->bInterfaceProtocol; }

    /// Index of the string descriptor that names the setting; 0 if there is none.
    quint8 stringIndex() const { return m_descriptor->iInterface; }

    QList<USBEndpointDescriptor> endpoints() const;

private:
    std::shared_ptr<const libusb_config_descriptor> m_configuration;
    const libusb_interface_descriptor* m_descriptor;
};

} // namespace USB
