// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibUsbDevice.h"
#include "USB/USBException.h"
#include "devices/UnitKind.h"

#include <QList>

#include <optional>

namespace AquenSolvar::Device {

/// A unit on the bus as one listing found it, for programs that follow a unit by its port. A plain
/// value. Main thread.
struct AttachedUnit
{
    USB::P_LibUsbDevice record;
    const UnitKind* kind = nullptr; ///< never null in a listing
    QString port;                   ///< as USB::portPath()
    QString name;                   ///< serial name; empty in the bootloader
    QString firmware;               ///< version; empty in the bootloader, or if not read
    bool needsUpdate = false;
    /// Why it could not be opened, or with error code 0 that it did not report its version.
    std::optional<USB::USBException> error;

    /// What the user calls the kind: "aquen" or "solvar", in either mode.
    QString kindWord() const;

    /// Whether both are the same attachment of the same unit in the same mode.
    bool isSameAs(const AttachedUnit& other) const;

    /// Whether one of them is the same in that sense.
    bool isAmong(const QList<AttachedUnit>& units) const;

    /// Opens a unit in application mode, reads name, firmware and needsUpdate, and closes it. Tries
    /// again for half a second while it is in use: another copy of this program may be reading it.
    void read();

    /// As read(), but a bootloader is opened as well and closed again. `error` holds why it could
    /// not be.
    void tryOpen();
};

/// All units on the bus, in order of their ports. None is opened. Empty without a USB session.
QList<AttachedUnit> attachedUnits();

/// What a person can do about a unit that cannot be opened.
QString remedyFor(const USB::USBException& error);

} // namespace AquenSolvar::Device
