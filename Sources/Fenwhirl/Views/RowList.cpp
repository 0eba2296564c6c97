#include "Fenwhirl/Views/RowList.h"

#include <algorithm>
#include <utility>

RowList::RowList(QList<QByteArray> roleNames, QObject* parent)
    : QAbstractListModel(parent)
    , roleNames_(std::move(roleNames)) {}

void RowList::setRows(const QList<QVariantList>& rows) {
    const int before = count();
    const int after = static_cast<int>(rows.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        rows_.resize(after);
        endRemoveRows();
    }
    for (int row = 0; row < std::min(before, after); ++row)
        update(row, rows.at(row));
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        rows_ += rows.mid(before);
        endInsertRows();
    }
    if (after != before)
        Q_EMIT countChanged();
}

void RowList::update(int row, const QVariantList& values) {
    QList<int> roles;
    for (int place = 0; place < values.size(); ++place) {
        if (rows_.at(row).at(place) != values.at(place))
            roles.append(Qt::UserRole + place);
    }
    if (roles.isEmpty())
        return;
    rows_[row] = values;
    Q_EMIT dataChanged(index(row), index(row), roles);
}

int RowList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant RowList::data(const QModelIndex& index, int role) const {
    const int place = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || place < 0 || place >= roleNames_.size())
        return {};
    return rows_.at(index.row()).at(place);
}

QHash<int, QByteArray> RowList::roleNames() const {
    QHash<int, QByteArray> names;
    for (int place = 0; place < roleNames_.size(); ++place)
        names.insert(Qt::UserRole + place, roleNames_.at(place));
    return names;
}
