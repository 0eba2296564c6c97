#include "Fenwhirl/Views/FanList.h"

#include <algorithm>

namespace Fenwhirl {

FanList::FanList(Monitor& monitor, const SensorChoices& choices, QObject* parent)
    : QAbstractListModel(parent)
    , monitor_(monitor)
    , choices_(choices) {}

void FanList::removeMissing(const QList<FanState>& fans) {
    // From the end, so that the indices of earlier rows stay valid.
    for (int row = count() - 1; row >= 0; --row) {
        const int index = rows_.at(row)->index();
        if (std::any_of(fans.begin(), fans.end(), [index](const FanState& fan) { return fan.id == index; })) {
            continue;
        }
        beginRemoveRows({}, row, row);
        FanRow* gone = rows_.takeAt(row);
        endRemoveRows();
        gone->deleteLater(); // a card may still refer to it while being destroyed
    }
}

void FanList::setFans(const QList<FanState>& fans) {
    const int countBefore = count();
    removeMissing(fans);
    bool membersChanged = count() != countBefore;
    for (int row = 0; row < fans.size(); ++row) {
        const FanState& fan = fans.at(row);
        if (row < count() && rows_.at(row)->index() == fan.id) {
            rows_.at(row)->setFan(fan);
            continue;
        }
        const auto later = std::find_if(rows_.begin() + row, rows_.end(), [&fan](const FanRow* candidate) {
            return candidate->index() == fan.id;
        });
        if (later == rows_.end()) {
            beginInsertRows({}, row, row);
            rows_.insert(row, new FanRow(monitor_, choices_, fan, this));
            endInsertRows();
            membersChanged = true;
            continue;
        }
        const int from = static_cast<int>(later - rows_.begin());
        beginMoveRows({}, from, from, {}, row);
        rows_.move(from, row);
        endMoveRows();
        rows_.at(row)->setFan(fan);
    }
    if (!membersChanged) {
        return;
    }
    retranslate(); // a fan is named by its side or by its number, depending on how many there are
    if (count() != countBefore) {
        Q_EMIT countChanged();
    }
}

void FanList::refreshSettings() {
    for (FanRow* row : std::as_const(rows_)) {
        row->refreshSetting();
    }
}

void FanList::refreshSurroundings() {
    for (FanRow* row : std::as_const(rows_)) {
        row->refreshSurroundings();
    }
}

void FanList::retranslate() {
    for (FanRow* row : std::as_const(rows_)) {
        row->retranslate();
    }
}

int FanList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant FanList::data(const QModelIndex& index, int role) const {
    if (role != fanRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    return QVariant::fromValue(rows_.at(index.row()));
}

QHash<int, QByteArray> FanList::roleNames() const {
    return {{fanRole, "fan"}};
}

} // namespace Fenwhirl
