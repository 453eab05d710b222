// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "update/FirmwareChoice.h"

#include <QStringList>

namespace AquenSolvar::Cli {

/// What support needs to know about this computer, by lines, and for each problem its remedy. Opens
/// every unit for a moment. @param usbFault why there is no USB session; empty if there is one
QStringList examine(const FirmwareChoice& firmware, const QString& usbFault);

} // namespace AquenSolvar::Cli
