#pragma once

#include "USB/USBInterface.h"

#include <QList>

namespace USB {

/// Read access to a configuration (USB 2.0, 9.6.3) and its interfaces. Without a configuration, as
/// made by default, it has no interfaces. Any thread.
class USBConfigDescriptor
{
public:
    USBConfigDescriptor() = default;

    /// Takes over @p configuration and frees it with libusb_free_config_descriptor() when the last
    /// wrapper of it is gone.
    explicit USBConfigDescriptor(libusb_config_descriptor* configuration);
    virtual ~USBConfigDescriptor();
    USBConfigDescriptor(const USBConfigDescriptor&) = default;
    USBConfigDescriptor& operator=(const USBConfigDescriptor&) = default;

    QList<USBInterface> interfaces() const;

private:
    std::shared_ptr<const libusb_config_descriptor> m_configuration;
};

} // namespace USB
