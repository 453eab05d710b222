// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "control/ControlLines.h"

#include <QFile>
#include <QSocketNotifier>

namespace VirtualUnit {

/// A FIFO into which others write control lines while a command runs. They are carried out on the
/// thread that made the object, by its event loop.
class ControlFifo
{
public:
    /// Opens the FIFO at @p path, or makes one and removes it at the end. The bus and the units
    /// must outlive it. Throws std::invalid_argument with a text for the user when something else
    /// is there.
    ControlFifo(const QString& path, Bus& bus, std::vector<LabelledUnit>& units);
    ControlFifo(const ControlFifo&) = delete;
    ControlFifo& operator=(const ControlFifo&) = delete;
    ~ControlFifo();

private:
    ControlLines m_lines;
    QString m_madePath; ///< empty when the FIFO was there
    QFile m_fifo;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace VirtualUnit
