// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "cli/CommandLine.h"
#include "cli/Reporter.h"
#include "cli/Status.h"
#include "devices/AttachedUnit.h"
#include "update/FirmwareChoice.h"
#include "update/UnitUpdate.h"

#include <QElapsedTimer>
#include <QTimer>

namespace AquenSolvar::Cli {

/// One run of a command, in the application's event loop, which it exits with the status. An
/// interrupt ends it at its next poll, an update at the next chunk. Main thread.
class Session : public QObject
{
    Q_OBJECT

public:
    /// @param commandLine valid, and outlives the session
    explicit Session(const CommandLine& commandLine);

    /// To be called by the event loop, once.
    void start();

private:
    void poll();
    void list();
    void watch();
    void beginUpdates();
    void updateNext();
    void on_update_ended();
    void conclude(const Device::AttachedUnit& unit, Status status, const QString& after,
                  const QString& message);
    void show(const char* event, const Device::AttachedUnit& unit);
    void fail(Status status, const QString& message);

    const CommandLine& m_commandLine;
    Reporter m_reporter;
    FirmwareChoice m_firmware;
    QTimer m_timer;
    QElapsedTimer m_elapsed;
    QList<Device::AttachedUnit> m_units; // watched, or still to be updated
    UnitUpdate* m_update = nullptr;      // a child, while it runs
    Status m_status = Status::Done;      // of the updates so far
    QStringList m_table;                 // a line for each
};

} // namespace AquenSolvar::Cli
