// The applications that load the processor, heaviest first, as rows ready to be shown.
//
// Threads: main thread only. Roles: those of ShownApp, by the same names.

#pragma once

#include "Fenwhirl/Processes/AppLoad.h"
#include "Fenwhirl/Views/RowList.h"

#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

// What one row shows of an application.
struct ShownApp {
    QString appId; // by which it is known again
    QString name;
    QString iconSource; // an image address; empty where the generic symbol stands
    QString shareText;  // "37 %"
    QString memoryText; // "3 412 Mo"
    double fraction;    // of the bar, 0 to 1
    bool canQuit;       // false shows the row as protected
    bool on;            // the switch; off while the user is asked

    bool operator==(const ShownApp&) const = default;
};

// The image address of an application's icon, by the application's path; empty when it has none.
using IconSource = std::function<QString(const QString& appPath)>;

// `isAskedAbout`: the question whether to quit this very application is open.
[[nodiscard]] ShownApp shown(const AppLoad& app, bool isAskedAbout, const IconSource& iconSource);

class AppList : public RowList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the apps view")

public:
    explicit AppList(QObject* parent = nullptr);

    void setApps(const QList<ShownApp>& apps);
};
