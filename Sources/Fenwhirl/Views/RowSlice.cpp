#include "Fenwhirl/Views/RowSlice.h"

RowSlice::RowSlice(QObject* parent) : QSortFilterProxyModel(parent) {
    // The data of a row does not affect the filter, so changes of data need not be examined.
    setDynamicSortFilter(false);
}

void RowSlice::setFirst(int first) {
    if (first == first_) {
        return;
    }
    first_ = first;
    invalidateFilter();
    Q_EMIT sliceChanged();
}

void RowSlice::setRows(int rows) {
    if (rows == rows_) {
        return;
    }
    rows_ = rows;
    invalidateFilter();
    Q_EMIT sliceChanged();
}

bool RowSlice::filterAcceptsRow(int row, const QModelIndex& /*parent*/) const {
    return row >= first_ && row - first_ < rows_;
}
