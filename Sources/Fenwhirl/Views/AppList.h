// The applications that load the processor, heaviest first, as rows ready for display.
//
// Threads: main thread only. Roles: the members of AppListEntry, under the same names.

#pragma once

#include "Fenwhirl/Processes/AppLoad.h"
#include "Fenwhirl/Views/RowList.h"

#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace Fenwhirl {

// What one row shows of an application.
struct AppListEntry {
    QString appId; // identifies the application across readings
    QString name;
    QString iconSource; // image URL; empty for the generic symbol
    QString shareText;  // "37 %"
    QString memoryText; // "3 412 Mo"
    double fraction;    // filled part of the bar; any number, which the bar limits to 0 to 1
    bool canQuit;       // false shows the row as protected
    bool on;            // state of the switch; off while the quit question is open

    bool operator==(const AppListEntry&) const = default;
};

// Maps the path of an application to the image URL of its icon; empty when it has none.
using IconSource = std::function<QString(const QString& appPath)>;

// `isAskedAbout`: whether the question to quit this application is open.
[[nodiscard]] AppListEntry shown(const AppLoad& app, bool isAskedAbout, const IconSource& iconSource);

class AppList : public Fenwhirl::RowList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the apps view")

public:
    explicit AppList(QObject* parent = nullptr);

    void setApps(const QList<AppListEntry>& apps);
};

} // namespace Fenwhirl
