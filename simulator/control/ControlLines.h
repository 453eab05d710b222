// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/Bus.h"
#include "control/UnitOption.h"

#include <QByteArray>
#include <QStringList>

namespace VirtualUnit {

/// Carries out lines that change a bus while a program runs, see help(). For one thread at a time.
class ControlLines
{
public:
    /// Both must outlive this object.
    ControlLines(Bus& bus, std::vector<LabelledUnit>& units)
        : m_bus(bus)
        , m_units(units)
    {
    }

    static QString help();

    /// Takes the next bytes, in ISO 8859-1 so that any encoding passes through, and carries out the
    /// lines that they complete. An error in a line is reported on standard error and the line is
    /// dropped.
    void feed(const QByteArray& bytes);

private:
    void perform(const QStringList& words);
    static Fault fault(const QStringList& words);

    Bus& m_bus;
    std::vector<LabelledUnit>& m_units;
    QByteArray m_pending;
};

} // namespace VirtualUnit
