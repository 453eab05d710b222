#pragma once

#include <QSortFilterProxyModel>

namespace AquenSolvar {

/// Orders the units of the device list for display: units in their bootloader before the others,
/// then by serial name. Filters nothing. GUI thread.
class AquenSolvarFilterProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit AquenSolvarFilterProxyModel(QObject* parent = nullptr);

signals:
    /// Rows were inserted or removed; not emitted on resets and layout changes.
    void rowCountChanged();

protected:
    /// Not a strict weak order: a unit in application mode on the left is compared by serial name
    /// alone. False, with a log line, when either row holds no device.
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
};

} // namespace AquenSolvar
