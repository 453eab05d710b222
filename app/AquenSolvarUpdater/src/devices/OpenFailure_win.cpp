// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/OpenFailure.h"

#include <libusb.h>

namespace AquenSolvar {

OpenFailure openFailureOf(int libusbError)
{
    switch (libusbError) {
    case LIBUSB_ERROR_NOT_FOUND:
    case LIBUSB_ERROR_NOT_SUPPORTED:
        return OpenFailure::NoDriver;
    // WinUSB lets one program open a unit and denies it to all others.
    case LIBUSB_ERROR_ACCESS:
    case LIBUSB_ERROR_BUSY:
        return OpenFailure::InUse;
    default:
        return OpenFailure::Other;
    }
}

} // namespace AquenSolvar
