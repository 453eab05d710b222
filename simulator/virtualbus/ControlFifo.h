// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/Bus.h"
#include "virtualbus/UnitOption.h"

#include <QFile>
#include <QSocketNotifier>

namespace VirtualUnit {

/// A FIFO into which others write lines that change the bus while a command runs, see help().
/// Errors in a line are reported on standard error and the line is dropped. Lines are carried out
/// on the thread that made the object, by its event loop.
class ControlFifo
{
public:
    /// Opens the FIFO at @p path, or makes one and removes it at the end. The bus and the units
    /// must outlive it. Throws std::invalid_argument with a text for the user when something else
    /// is there.
    ControlFifo(const QString& path, Bus& bus, const std::vector<LabelledUnit>& units);
    ControlFifo(const ControlFifo&) = delete;
    ControlFifo& operator=(const ControlFifo&) = delete;
    ~ControlFifo();

    static QString help();

private:
    void readLines();
    void perform(const QStringList& words);
    static Fault fault(const QStringList& words);

    Bus& m_bus;
    const std::vector<LabelledUnit>& m_units;
    QString m_madePath; ///< empty when the FIFO was there
    QFile m_fifo;
    QByteArray m_pending;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace VirtualUnit
