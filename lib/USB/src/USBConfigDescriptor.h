// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/USBInterface.h"

#include <QList>

namespace USB {

/// Read access to a configuration (USB 2.0, 9.6.3) and its interfaces. Default-constructed, it has
/// no interfaces. Any thread.
class USBConfigDescriptor
{
public:
    USBConfigDescriptor() = default;

    /// Takes ownership of @p configuration; the last wrapper that refers to it frees it with
    /// libusb_free_config_descriptor().
    explicit USBConfigDescriptor(libusb_config_descriptor* configuration);
    virtual ~USBConfigDescriptor();
    USBConfigDescriptor(const USBConfigDescriptor&) = default;
    USBConfigDescriptor& operator=(const USBConfigDescriptor&) = default;

    QList<USBInterface> interfaces() const;

private:
    std::shared_ptr<const libusb_config_descriptor> m_configuration;
};

} // namespace USB
