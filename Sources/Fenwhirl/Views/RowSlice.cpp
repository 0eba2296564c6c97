#include "Fenwhirl/Views/RowSlice.h"

namespace Fenwhirl {

RowSlice::RowSlice(QObject* parent) : QSortFilterProxyModel(parent) {
    // The data of a row does not affect the filter, so changes of data need not be examined.
    setDynamicSortFilter(false);
}

void RowSlice::setFirst(int first) {
    setBound(first_, first);
}

void RowSlice::setRows(int rows) {
    setBound(rows_, rows);
}

void RowSlice::setBound(int& bound, int value) {
    if (value == bound) {
        return;
    }
#if QT_VERSION >= QT_VERSION_CHECK(6, 10, 0)
    beginFilterChange();
    bound = value;
    endFilterChange(Direction::Rows);
#else
    bound = value;
    invalidateFilter();
#endif
    Q_EMIT sliceChanged();
}

void RowSlice::setSourceModel(QAbstractItemModel* model) {
    if (sourceModel() != nullptr) {
        sourceModel()->disconnect(this, nullptr);
    }
    QSortFilterProxyModel::setSourceModel(model); // connects its own slots, which have to run before ours
    if (model != nullptr) {
        connect(model, &QAbstractItemModel::rowsInserted, this, &RowSlice::filterAnew);
        connect(model, &QAbstractItemModel::rowsRemoved, this, &RowSlice::filterAnew);
    }
}

void RowSlice::filterAnew() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 10, 0)
    beginFilterChange();
    endFilterChange(Direction::Rows);
#else
    invalidateFilter();
#endif
}

bool RowSlice::filterAcceptsRow(int row, const QModelIndex& /*parent*/) const {
    return row >= first_ && row - first_ < rows_;
}

} // namespace Fenwhirl
