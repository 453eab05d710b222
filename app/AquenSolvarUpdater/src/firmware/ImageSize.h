// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

namespace AquenSolvar::Device {

/// Exclusive upper bound of a firmware image's length in bytes: the flash that the application
/// firmware of a unit may take.
constexpr int imageSizeBound = 0x28000;

} // namespace AquenSolvar::Device
