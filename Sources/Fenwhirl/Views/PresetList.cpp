#include "Fenwhirl/Views/PresetList.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <algorithm>

namespace Fenwhirl {

PresetList::PresetList(Monitor& monitor, QObject* parent) : QAbstractListModel(parent), monitor_(monitor) {
    connect(&monitor, &Monitor::activePresetChanged, this, &PresetList::refreshActive);
}

void PresetList::retranslate() {
    Q_EMIT textsChanged();
    Q_EMIT activeChanged();
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {titleRole, detailRole});
}

void PresetList::refreshActive() {
    Q_EMIT activeChanged();
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {activeRole});
}

void PresetList::apply(int index) {
    if (index >= 0 && index < rowCount()) {
        monitor_.apply(allPresets.at(static_cast<std::size_t>(index)));
    }
}

QStringList PresetList::titles() const {
    QStringList titles;
    for (const Preset preset : allPresets) {
        titles.append(title(preset));
    }
    return titles;
}

int PresetList::activeIndex() const {
    const std::optional<Preset> active = monitor_.activePreset();
    if (!active) {
        return -1;
    }
    return static_cast<int>(std::find(allPresets.begin(), allPresets.end(), *active) - allPresets.begin());
}

QString PresetList::activeTitle() const {
    const std::optional<Preset> active = monitor_.activePreset();
    return active ? title(*active) : localized(u"Personnalisé");
}

int PresetList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(allPresets.size());
}

QVariant PresetList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Preset preset = allPresets.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case titleRole:
        return title(preset);
    case detailRole:
        return detail(preset);
    case activeRole:
        return monitor_.activePreset() == preset;
    default:
        return {};
    }
}

QHash<int, QByteArray> PresetList::roleNames() const {
    return {{titleRole, "title"}, {detailRole, "detail"}, {activeRole, "active"}};
}

} // namespace Fenwhirl
