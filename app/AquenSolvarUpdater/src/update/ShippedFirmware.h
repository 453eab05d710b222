// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "devices/UnitKind.h"

#include <QFutureWatcher>
#include <QObject>
#include <QVariantMap>

#include <map>

namespace AquenSolvar {

/// The newest valid firmware bundle of each kind of unit, for QML (singleton ShippedFirmware).
/// Finds them on another thread, because bundles can be many and large. GUI thread.
class ShippedFirmware : public QObject
{
    Q_OBJECT
    /// By the I_Device::DeviceType of the bootloader, as decimal text: the version of the newest
    /// valid bundle for people, empty if there is none. Kinds are absent until looked up.
    Q_PROPERTY(QVariantMap versions READ versions NOTIFY versionsChanged)

public:
    using QObject::QObject;

    QVariantMap versions() const { return m_versions; }

    /// Looks up the newest valid bundle for this kind of unit, in either mode, and then updates
    /// `versions`. A request during a look-up of the same kind causes one more. Null and unknown
    /// kinds do nothing.
    Q_INVOKABLE void lookUp(AquenSolvar::Device::I_Device* device);

signals:
    /// A look-up has ended.
    void versionsChanged();

private:
    struct LookUp
    {
        QFutureWatcher<qint32> watcher;
        bool isPending = false; // until its result is taken
        bool isStale = false;   // requested again since it began
    };

    void start(const Device::UnitKind& bootloader, LookUp& lookUp);
    void takeResult(const Device::UnitKind& bootloader, LookUp& lookUp);

    std::map<Device::I_Device::DeviceType, LookUp> m_lookUps; // by the bootloader's type
    QVariantMap m_versions;
};

} // namespace AquenSolvar
