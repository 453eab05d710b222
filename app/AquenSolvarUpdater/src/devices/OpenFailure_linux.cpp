// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/OpenFailure.h"

#include <libusb.h>

namespace AquenSolvar {

OpenFailure openFailureOf(int libusbError)
{
    switch (libusbError) {
    case LIBUSB_ERROR_ACCESS:
        return OpenFailure::NoPermission;
    case LIBUSB_ERROR_BUSY:
        return OpenFailure::InUse;
    default:
        return OpenFailure::Other;
    }
}

} // namespace AquenSolvar
