// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QMetaType>
#include <QObject>
#include <QSharedPointer>
#include <QString>

namespace AquenSolvar::Device {

/// An attached unit, whether it runs its application firmware or its DFU bootloader. The properties
/// never change during an object's life. The watcher and the list model share ownership; QML gets
/// plain pointers and never owns one, which the constructor ensures. GUI thread.
class I_Device : public QObject
{
    Q_OBJECT
    Q_PROPERTY(DeviceType deviceType READ deviceType CONSTANT)
    Q_PROPERTY(QString serialName READ serialName CONSTANT)
    Q_PROPERTY(bool needsUpdate READ needsUpdate CONSTANT)
    Q_PROPERTY(bool isDfu READ isDfu CONSTANT)
    Q_PROPERTY(QString firmwareVersion READ firmwareVersion CONSTANT)
    Q_PROPERTY(QString port READ port CONSTANT)

public:
    /// QML compares these by number: the values are fixed.
    enum DeviceType
    {
        AQUEN = 0,      ///< washing unit, application firmware running
        AQUEN_DFU = 1,  ///< washing unit in its bootloader
        SOLVAR = 2,     ///< curing unit, application firmware running
        SOLVAR_DFU = 3, ///< curing unit in its bootloader
        UNKNOWN = 4     ///< none of the four; no card shows it as one
    };
    Q_ENUM(DeviceType)

    explicit I_Device(QObject* parent = nullptr);
    ~I_Device() override;

    virtual DeviceType deviceType() const = 0;

    /// The unit's serial name, or a fixed English label if it reports none. The user interface
    /// translates the labels (context "UnitTitle").
    virtual QString serialName() const = 0;

    /// The translated heading under which the unit is listed.
    virtual QString sectionName() const = 0;

    /// The primary sort key of the list: 0 for a unit in its bootloader, 1 otherwise.
    virtual int sortOrder() const = 0;

    /// Whether to offer a firmware update for the unit.
    virtual bool needsUpdate() const = 0;

    /// Whether the unit runs its bootloader.
    virtual bool isDfu() const = 0;

    /// The version of the unit's firmware: digits and "." only. Empty if the unit reports none, as
    /// a bootloader does.
    virtual QString firmwareVersion() const = 0;

    /// The USB port that the unit is plugged into, see USB::portPath().
    virtual QString port() const = 0;
};

using P_I_Device = QSharedPointer<I_Device>;

} // namespace AquenSolvar::Device
