#pragma once

#include "unit/SetupPacket.h"

#include <libusb.h>

namespace Fuzz {

/// A configuration as libusb gives it out: taken from the bytes of USB 2.0, 9.6.3, whatever they
/// say, with counts that fit the arrays, and no array where there is nothing. Freed with
/// freeHostConfiguration().
libusb_config_descriptor* makeHostConfiguration(const VirtualUnit::Bytes& bytes);
void freeHostConfiguration(libusb_config_descriptor* configuration);

} // namespace Fuzz
