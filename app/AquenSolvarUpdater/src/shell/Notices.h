// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "tracking/AquenSolvarWatcher.h"

#include <QObject>

#include <utility>

namespace AquenSolvar {

class InstanceGuard;
class ShippedFirmware;

/// What the user should know at present, for QML (singleton Notices): the most urgent of an
/// attached unit that cannot be opened, an attached unit without a valid firmware bundle for its
/// kind, another copy of this program, and a log that cannot be written. When the user returns to
/// the program, it checks again what can have been repaired elsewhere: bundles and the other copy.
/// GUI thread.
class Notices : public QObject
{
    Q_OBJECT
    /// One translated sentence; empty if there is none, and before followWatcher().
    Q_PROPERTY(QString text READ text NOTIFY changed)
    /// The heading in docs/user-guide.md that describes the remedy; empty without a text.
    Q_PROPERTY(QString topic READ topic NOTIFY changed)

public:
    explicit Notices(QObject* parent = nullptr);

    QString text() const { return m_shown.text; }
    QString topic() const { return m_shown.topic; }

    /// Follows the units that the watcher reports from now on. Call once, when it is initialised.
    /// Not owned. Null is logged and does nothing.
    Q_INVOKABLE void followWatcher(AquenSolvar::AquenSolvarWatcher* watcher);

    /// Follows what look-ups of bundles find. Only to repeat one, requests it itself. Call once.
    /// Not owned; must outlive this object.
    void followFirmware(ShippedFirmware* firmware);

    /// Follows whether another copy is running. Call once. Not owned; must outlive this object.
    void followGuard(InstanceGuard* guard);

signals:
    void changed();

private:
    struct Notice
    {
        QString text;
        QString topic;
    };

    void checkAgain();
    void update();
    bool lacksFirmware(const Device::P_I_Device& unit) const;
    Notice mostUrgent() const;
    static Notice notOpened(const QString& product, OpenFailure failure);

    AquenSolvarWatcher* m_watcher = nullptr;
    ShippedFirmware* m_firmware = nullptr;
    InstanceGuard* m_guard = nullptr;
    bool m_isOnlyCopy = true;
    // In the order of arrival.
    QList<std::pair<USB::P_LibUsbDevice, OpenFailure>> m_unopened;
    QList<Device::P_I_Device> m_units;
    Notice m_shown;
};

} // namespace AquenSolvar
