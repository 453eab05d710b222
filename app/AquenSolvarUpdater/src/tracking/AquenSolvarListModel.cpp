// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tracking/AquenSolvarListModel.h"

#include "qslog/Log.h"

#include <iterator>

namespace AquenSolvar {

AquenSolvarListModel::AquenSolvarListModel(QObject* parent)
    : QAbstractListModel(parent)
    , m_roleNames{{ObjectRole, "object"}, {SectionRole, "section"}}
{
}

int AquenSolvarListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant AquenSolvarListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= count())
        return QVariant();
    const Device::P_I_Device& device = std::next(m_devices.begin(), index.row())->second;
    switch (role) {
    case ObjectRole:
        return QVariant::fromValue(device.data());
    case SectionRole:
        return device->sectionName();
    default:
        return QVariant();
    }
}

void AquenSolvarListModel::addAqSolWatcher(AquenSolvarWatcher* watcher)
{
    if (watcher == nullptr) {
        QLOG_WARN() << "Was not passed a watcher";
        return;
    }
    connect(watcher, &AquenSolvarWatcher::addedDevice, this,
            &AquenSolvarListModel::on_AqSolWatcher_addedDevice);
    connect(watcher, &AquenSolvarWatcher::removedDevice, this,
            &AquenSolvarListModel::on_AqSolWatcher_removedDevice);
}

bool AquenSolvarListModel::insertDevice(const Device::P_I_Device& device)
{
    const QString serialName = device->serialName();
    QLOG_INFO() << serialName;
    const auto position = m_devices.lower_bound(serialName);
    if (position != m_devices.end() && position->first == serialName) {
        QLOG_WARN() << "Already know about this device with address" << serialName;
        return false;
    }
    const int row = rowOf(position);
    beginInsertRows(QModelIndex(), row, row);
    m_devices.emplace_hint(position, serialName, device);
    endInsertRows();
    emit dataChanged(index(row), index(row));
    emit countChanged();
    emit addedDevice(device.data());
    return true;
}

bool AquenSolvarListModel::removeDevice(const Device::P_I_Device& device)
{
    const auto position = m_devices.find(device->serialName());
    if (position == m_devices.end()) {
        QLOG_WARN() << "Unknown device";
        return false;
    }
    disconnect(device.data(), nullptr, this, nullptr);
    const int row = rowOf(position);
    beginRemoveRows(QModelIndex(), row, row);
    m_devices.erase(position);
    endRemoveRows();
    emit countChanged();
    return true;
}

void AquenSolvarListModel::on_AqSolWatcher_addedDevice(const Device::P_I_Device& device)
{
    if (!insertDevice(device))
        QLOG_WARN() << "Failed to insert device" << device->serialName();
}

void AquenSolvarListModel::on_AqSolWatcher_removedDevice(const Device::P_I_Device& device)
{
    removeDevice(device);
}

int AquenSolvarListModel::rowOf(Devices::const_iterator position) const
{
    return int(std::distance(m_devices.begin(), position));
}

} // namespace AquenSolvar
