// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QSortFilterProxyModel>

namespace AquenSolvar {

/// Sorts the units of the device list for display: units in their bootloader first, then by serial
/// name. Filters nothing. GUI thread.
class AquenSolvarFilterProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit AquenSolvarFilterProxyModel(QObject* parent = nullptr);

signals:
    /// Rows were inserted or removed. Not emitted on resets and layout changes.
    void rowCountChanged();

protected:
    /// True when the left unit's sort order is smaller; otherwise compares the serial names, even
    /// if the left unit's sort order is greater. This is not a strict weak ordering.
    /// @return false, with an error in the log, when a row has no device
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
};

} // namespace AquenSolvar
