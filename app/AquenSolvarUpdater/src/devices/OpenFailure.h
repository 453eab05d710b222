// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

namespace AquenSolvar {

/// Why a unit cannot be opened, as far as a remedy differs.
enum class OpenFailure
{
    NoPermission,
    NoDriver,
    InUse, ///< by another program or another copy of this one
    Other
};

/// The failure behind libusb's error, which depends on the platform. Any thread.
/// @param libusbError one of libusb_error; 0 if the failure is not libusb's
OpenFailure openFailureOf(int libusbError);

} // namespace AquenSolvar
