// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "devices/I_Device.h"
#include "tracking/AquenSolvarWatcher.h"

#include <QAbstractListModel>

#include <map>

namespace AquenSolvar {

/// The list of attached, recognised units in ascending order of serial name. The serial name is the
/// identity of a unit here: a second unit of the same name is refused. GUI thread.
class AquenSolvarListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role
    {
        ObjectRole = Qt::UserRole + 1, ///< "object": the unit as I_Device*
        SectionRole = Qt::UserRole + 2 ///< "section": its sectionName()
    };

    explicit AquenSolvarListModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override { return m_roleNames; }
    int count() const { return int(m_devices.size()); }

    /// Lists the units that @p watcher reports from now on. Null is logged and does nothing.
    Q_INVOKABLE void addAqSolWatcher(AquenSolvar::AquenSolvarWatcher* watcher);

    /// Shares ownership of the device.
    /// @return false, with a warning in the log and no change, when the serial name is listed
    bool insertDevice(const AquenSolvar::Device::P_I_Device& device);

    /// Removes the unit of the same serial name.
    /// @return false, with a warning in the log and no change, when it is not listed
    bool removeDevice(const AquenSolvar::Device::P_I_Device& device);

signals:
    void countChanged();
    void addedDevice(AquenSolvar::Device::I_Device* device);

public slots:
    void on_AqSolWatcher_addedDevice(const AquenSolvar::Device::P_I_Device& device);
    void on_AqSolWatcher_removedDevice(const AquenSolvar::Device::P_I_Device& device);

private:
    using Devices = std::map<QString, Device::P_I_Device>;

    int rowOf(Devices::const_iterator position) const;

    QHash<int, QByteArray> m_roleNames;
    Devices m_devices;
};

} // namespace AquenSolvar
