// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "devices/AttachedUnit.h"
#include "firmware/FirmwareBundle.h"
#include "update/AquenSolvarFirmwareUpdateTask.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

namespace AquenSolvar {

/// The whole update of one unit without a window: restarts it into its bootloader, writes the
/// firmware, waits for its return and reads its version back. Follows the unit by its port, so that
/// several units can be updated at the same time. Every wait has a limit. Used once. Main thread,
/// with an event loop; start() blocks as long as Device::AquenSolvarDevice.
class UnitUpdate : public QObject
{
    Q_OBJECT

public:
    enum class Outcome
    {
        Pending,
        Updated, ///< the unit runs the new firmware
        Failed,
        Gone,     ///< another unit or none is on the port; nothing was sent
        NoAccess, ///< the unit could not be opened
        Stopped
    };

    enum class Step
    {
        Restart, ///< into the bootloader
        Write,
        Return, ///< restart into the new firmware
    };
    Q_ENUM(Step)

    /// How long each wait for the unit may take.
    static constexpr std::chrono::seconds waitLimit{30};
    /// After that, a unit that reports that it is busy is given up.
    static constexpr std::chrono::seconds busyLimit{120};

    /// @param limit for all of the update; 0 if only each wait has one
    UnitUpdate(Device::AttachedUnit unit, Device::FirmwareBundle bundle,
               std::chrono::milliseconds limit, QObject* parent = nullptr);
    ~UnitUpdate() override;

    void start();

    /// Ends the update, while firmware is written at the next chunk. Does not block.
    void stop();

    Outcome outcome() const { return m_outcome; }
    const Device::AttachedUnit& unit() const { return m_unit; }
    /// The version that was read back; empty before.
    QString firmwareAfter() const { return m_firmwareAfter; }
    /// What failed and the state that the unit is in, for people; empty for Updated.
    QString message() const { return m_message; }

signals:
    void stepBegun(AquenSolvar::UnitUpdate::Step step);
    /// @param fraction from 0 to 1; 1 only when the whole image was sent
    void progressed(float fraction);
    /// The update has ended, see outcome(). Emitted once, and not by start().
    void ended();

private:
    void restart();
    void poll();
    void beginWait(Step step);
    void write(const Device::AttachedUnit& bootloader);
    void on_task_downloadEnded();
    void verify(Device::AttachedUnit returned);
    void fail(const QString& message);
    void endStopped();
    void end(Outcome outcome, const QString& message);
    QString whereabouts() const;

    Device::AttachedUnit m_unit;
    Device::AttachedUnit m_bootloader; // as it was opened
    Device::FirmwareBundle m_bundle;
    std::chrono::milliseconds m_limit;
    std::unique_ptr<Tasks::AquenSolvarFirmwareUpdateTask> m_task;
    QTimer m_timer;
    QElapsedTimer m_total;
    QElapsedTimer m_wait; // valid while the unit is awaited
    Step m_step = Step::Restart;
    Outcome m_outcome = Outcome::Pending;
    bool m_stopRequested = false;
    QString m_error; // the first of the download
    QString m_firmwareAfter;
    QString m_message;
};

} // namespace AquenSolvar
