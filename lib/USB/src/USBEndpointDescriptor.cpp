// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/USBEndpointDescriptor.h"

namespace USB {

USBEndpointDescriptor::USBEndpointDescriptor(
    std::shared_ptr<const libusb_config_descriptor> configuration,
    const libusb_endpoint_descriptor& endpoint)
    : m_configuration(std::move(configuration))
    , m_endpoint(&endpoint)
{
}

USBEndpointDescriptor::~USBEndpointDescriptor() = default;

} // namespace USB
