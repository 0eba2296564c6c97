#include "Fenwhirl/Views/RowList.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

namespace Fenwhirl {

RowList::RowList(QList<QByteArray> roleNames, QObject* parent)
    : QAbstractListModel(parent)
    , roleNames_(std::move(roleNames)) {}

void RowList::setRows(QList<Row> rows) {
    QHash<QString, int> seen;
    for (Row& row : rows) {
        // Makes identities unique by numbering all but the first row of each.
        if (const int before = seen[row.identity]++; before > 0) {
            row.identity += QStringLiteral(" #%1").arg(before);
        }
    }
    const int countBefore = count();
    removeMissing(rows);
    for (int place = 0; place < rows.size(); ++place) {
        const Row& row = rows.at(place);
        const auto later = std::find_if(rows_.begin() + std::min(place, count()), rows_.end(),
                                        [&row](const Row& shown) { return shown.identity == row.identity; });
        if (later == rows_.end()) {
            // Inserts consecutive new rows in one operation.
            int end = place + 1;
            while (end < rows.size() && !shows(rows.at(end).identity)) {
                ++end;
            }
            beginInsertRows({}, place, end - 1);
            for (int added = place; added < end; ++added) {
                rows_.insert(added, rows.at(added));
            }
            endInsertRows();
            place = end - 1;
            continue;
        }
        const int from = static_cast<int>(later - rows_.begin());
        if (from != place) {
            beginMoveRows({}, from, from, {}, place);
            rows_.move(from, place);
            endMoveRows();
        }
        update(place, row.values);
    }
    if (count() != countBefore) {
        Q_EMIT countChanged();
    }
}

void RowList::removeMissing(const QList<Row>& rows) {
    QSet<QString> left;
    for (const Row& row : rows) {
        left.insert(row.identity);
    }
    // From the end, so that the indices of earlier rows stay valid; consecutive rows are removed together.
    for (int last = count() - 1; last >= 0; --last) {
        int first = last + 1;
        while (first > 0 && !left.contains(rows_.at(first - 1).identity)) {
            --first;
        }
        if (first > last) {
            continue;
        }
        beginRemoveRows({}, first, last);
        rows_.remove(first, last - first + 1);
        endRemoveRows();
        last = first;
    }
}

bool RowList::shows(const QString& identity) const {
    return std::any_of(rows_.begin(), rows_.end(),
                       [&identity](const Row& shown) { return shown.identity == identity; });
}

void RowList::update(int row, const QVariantList& values) {
    QList<int> roles;
    QVariantList& shown = rows_[row].values;
    for (int place = 0; place < values.size(); ++place) {
        if (shown.at(place) != values.at(place)) {
            roles.append(Qt::UserRole + place);
        }
    }
    if (roles.isEmpty()) {
        return;
    }
    shown = values;
    Q_EMIT dataChanged(index(row), index(row), roles);
}

int RowList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant RowList::data(const QModelIndex& index, int role) const {
    const int place = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || place < 0 || place >= roleNames_.size()) {
        return {};
    }
    return rows_.at(index.row()).values.at(place);
}

QHash<int, QByteArray> RowList::roleNames() const {
    QHash<int, QByteArray> names;
    for (int place = 0; place < roleNames_.size(); ++place) {
        names.insert(Qt::UserRole + place, roleNames_.at(place));
    }
    return names;
}

} // namespace Fenwhirl
