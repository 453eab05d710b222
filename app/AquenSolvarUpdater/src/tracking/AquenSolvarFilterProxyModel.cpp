// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tracking/AquenSolvarFilterProxyModel.h"

#include "qslog/Log.h"
#include "tracking/AquenSolvarListModel.h"

namespace AquenSolvar {

AquenSolvarFilterProxyModel::AquenSolvarFilterProxyModel(QObject* parent)
    : QSortFilterProxyModel(parent)
{
    connect(this, &QAbstractItemModel::rowsInserted, this,
            &AquenSolvarFilterProxyModel::rowCountChanged);
    connect(this, &QAbstractItemModel::rowsRemoved, this,
            &AquenSolvarFilterProxyModel::rowCountChanged);
    sort(0); // otherwise the proxy keeps the order of the source
}

bool AquenSolvarFilterProxyModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const auto deviceAt = [](const QModelIndex& index) {
        return index.data(AquenSolvarListModel::ObjectRole).value<Device::I_Device*>();
    };
    const Device::I_Device* leftDevice = deviceAt(left);
    const Device::I_Device* rightDevice = deviceAt(right);
    if (leftDevice == nullptr || rightDevice == nullptr) {
        QLOG_ERROR() << "Got NULL devices";
        return false;
    }
    if (leftDevice->sortOrder() < rightDevice->sortOrder())
        return true;
    // A greater sort order on the left does not decide.
    return leftDevice->serialName() < rightDevice->serialName();
}

} // namespace AquenSolvar
