// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

/// Results of a compatibility check between a printer, its firmware and the desktop program, for
/// QML (type PrinterCompatibility, not creatable). The updater itself does not use them.
class PrinterCompatibility : public QObject
{
    Q_OBJECT

public:
    enum CompatibilityResponse
    {
        MendrelNoUpdate = 1,
        MendrelUnresolvedVersions = 2,
        MendrelMandatoryUpdate = 3,
        MendrelOptionalUpdate = 4,
        FirmwareNoUpdate = 5,
        FirmwareUnresolvedVersions = 6,
        FirmwareOptionalUpdate = 7,
        CompatNoUpdate = 8,
        CompatUnresolvedVersions = 9,
        CompatNoViableUpdates = 10,
        CompatUpdateBoth = 11,
        CompatFirmwareUpdate = 12,
        CompatMendrelUpdate = 13
    };
    Q_ENUM(CompatibilityResponse)

    using QObject::QObject;
};
