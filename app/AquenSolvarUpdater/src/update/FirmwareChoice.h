// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "devices/AttachedUnit.h"
#include "devices/VendorProtocol.h"
#include "firmware/FirmwareBundle.h"

#include <optional>

namespace AquenSolvar {

/// The firmware that an update writes: a given bundle file, or the newest valid bundle of a folder.
class FirmwareChoice
{
public:
    struct Found
    {
        Device::FirmwareBundle bundle;
        QString fault; ///< why there is no valid one, for people; empty if there is
    };

    /// @param file the bundle; empty to take the newest of the folder
    /// @param folder empty for the program's own
    FirmwareChoice(QString file, QString folder);

    /// What is written into units of that kind. The name of a given file must be one of the kind,
    /// since a bundle does not say which kind it is for. Reads files.
    Found find(const Device::UnitKind& kind) const;

    /// Whether a given file is, by its name, for that kind. True for every kind without one.
    bool isFor(const Device::UnitKind& kind) const;

    QString folder() const { return m_folder; }

    /// Reads the unit. Whether it needs an update then depends on what is written: it is older than
    /// that or, where a bundle states no version, older than the newest known to this program.
    void read(Device::AttachedUnit& unit) const;

private:
    QString m_file;
    QString m_folder;
};

/// The firmware version that a bundle's number states: 10301 is 1.3.1. Numbers below 10000 count
/// bundles and state none. Pure.
std::optional<Device::FirmwareVersion> firmwareVersionOf(qint32 bundleVersion);

/// Whether firmware of that version, as a unit reports it, is older than the bundle. Empty if the
/// bundle states no firmware version, or the unit did not report one.
std::optional<bool> isOlderThanBundle(const QString& firmware, qint32 bundleVersion);

} // namespace AquenSolvar
