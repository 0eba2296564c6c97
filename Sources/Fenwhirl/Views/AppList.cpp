#include "Fenwhirl/Views/AppList.h"

#include "Fenwhirl/Localization/DisplayText.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"

namespace Fenwhirl {

AppListEntry shown(const AppLoad& app, bool isAskedAbout, const IconSource& iconSource) {
    return {
        .appId = app.id,
        .name = displayText(app.name),
        .iconSource = app.appPath ? iconSource(*app.appPath) : QString(),
        .shareText = NumberFormat::percentText(app.cpu),
        .memoryText = NumberFormat::memoryText(app.memoryMB),
        .fraction = app.cpu / 100,
        .canQuit = app.canQuit,
        .on = !isAskedAbout,
    };
}

AppList::AppList(QObject* parent)
    : RowList({"appId", "name", "iconSource", "shareText", "memoryText", "fraction", "canQuit", "on"},
              parent) {}

void AppList::setApps(const QList<AppListEntry>& apps) {
    QList<Row> rows;
    rows.reserve(apps.size());
    for (const AppListEntry& app : apps) {
        rows.append({app.appId,
                     {app.appId, app.name, app.iconSource, app.shareText, app.memoryText, app.fraction,
                      app.canQuit, app.on}});
    }
    setRows(rows);
}

} // namespace Fenwhirl
