// A contiguous range of the rows of another model, as a model of its own: QML type `RowSlice`.
//
//   RowSlice { sourceModel: sensors; first: 12; rows: 12 }
//
// Rows that the source does not have are left out. When rows are inserted into the source or removed from it, the
// others move up or down, also across the ends of the range. Threads: main thread only.

#pragma once

#include <QSortFilterProxyModel>
#include <QtQml/qqmlregistration.h>

namespace Fenwhirl {

class RowSlice : public QSortFilterProxyModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int first READ first WRITE setFirst NOTIFY sliceChanged)
    Q_PROPERTY(int rows READ rows WRITE setRows NOTIFY sliceChanged)

public:
    explicit RowSlice(QObject* parent = nullptr);

    [[nodiscard]] int first() const { return first_; }

    void setFirst(int first);

    [[nodiscard]] int rows() const { return rows_; }

    void setRows(int rows);

    void setSourceModel(QAbstractItemModel* model) override;

Q_SIGNALS:
    void sliceChanged();

protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    // Sets a bound of the range, and filters anew if it has changed.
    void setBound(int& bound, int value);
    // Rows that come and go move others into the range and out of it.
    void filterAnew();

    int first_ = 0;
    int rows_ = 0;
};

} // namespace Fenwhirl
