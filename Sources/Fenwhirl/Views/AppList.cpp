#include "Fenwhirl/Views/AppList.h"

#include "Fenwhirl/Localization/DisplayText.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"

#include <algorithm>

namespace {

QVariant roleValue(const ShownApp& app, int role) {
    switch (role) {
    case AppList::NameRole:
        return app.name;
    case AppList::IconSourceRole:
        return app.iconSource;
    case AppList::ShareTextRole:
        return app.shareText;
    case AppList::MemoryTextRole:
        return app.memoryText;
    case AppList::FractionRole:
        return app.fraction;
    case AppList::CanQuitRole:
        return app.canQuit;
    case AppList::OnRole:
        return app.on;
    default:
        return {};
    }
}

QList<int> changedRoles(const ShownApp& before, const ShownApp& after) {
    QList<int> roles;
    for (int role = AppList::NameRole; role <= AppList::OnRole; ++role) {
        if (roleValue(before, role) != roleValue(after, role))
            roles.append(role);
    }
    return roles;
}

} // namespace

ShownApp shown(const AppLoad& app, bool isAskedAbout, const IconSource& iconSource) {
    return {
        .name = displayText(app.name),
        .iconSource = app.appPath ? iconSource(*app.appPath) : QString(),
        .shareText = NumberFormat::percentText(app.cpu),
        .memoryText = NumberFormat::memoryText(app.memoryMB),
        .fraction = app.cpu > 0 ? std::min(app.cpu / 100, 1.0) : 0,
        .canQuit = app.canQuit,
        .on = !isAskedAbout,
    };
}

void AppList::setApps(const QList<ShownApp>& apps) {
    const int before = count();
    const int after = static_cast<int>(apps.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        rows_.resize(after);
        endRemoveRows();
    }
    for (int row = 0; row < count(); ++row) {
        const QList<int> roles = changedRoles(rows_.at(row), apps.at(row));
        if (roles.isEmpty())
            continue;
        rows_[row] = apps.at(row);
        Q_EMIT dataChanged(index(row), index(row), roles);
    }
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        rows_ += apps.mid(before);
        endInsertRows();
    }
    if (after != before)
        Q_EMIT countChanged();
}

int AppList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant AppList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return roleValue(rows_.at(index.row()), role);
}

QHash<int, QByteArray> AppList::roleNames() const {
    return {{NameRole, "name"},
            {IconSourceRole, "iconSource"},
            {ShareTextRole, "shareText"},
            {MemoryTextRole, "memoryText"},
            {FractionRole, "fraction"},
            {CanQuitRole, "canQuit"},
            {OnRole, "on"}};
}
