// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <libusb.h>

#include <QtGlobal>

#include <memory>

namespace USB {

/// Read access to one endpoint descriptor (USB 2.0, 9.6.6). Keeps its configuration alive. Any
/// thread.
class USBEndpointDescriptor
{
public:
    USBEndpointDescriptor(std::shared_ptr<const libusb_config_descriptor> configuration,
                          const libusb_endpoint_descriptor& endpoint);
    virtual ~USBEndpointDescriptor();

    quint8 address() const { return m_endpoint->bEndpointAddress; }
    quint8 attributes() const { return m_endpoint->bmAttributes; }
    quint16 maxPacketSize() const { return m_endpoint->wMaxPacketSize; }
    quint8 interval() const { return m_endpoint->bInterval; }

private:
    std::shared_ptr<const libusb_config_descriptor> m_configuration;
    const libusb_endpoint_descriptor* m_endpoint;
};

} // namespace USB
