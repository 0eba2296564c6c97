// The applications that load the processor, heaviest first, as rows ready to be shown.
//
// Rows are updated in place, role by role. Threads: main thread only.

#pragma once

#include "Fenwhirl/Processes/AppLoad.h"

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

// What one row shows of an application.
struct ShownApp {
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

class AppList : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the apps view")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        NameRole = Qt::UserRole,
        IconSourceRole,
        ShareTextRole,
        MemoryTextRole,
        FractionRole,
        CanQuitRole,
        OnRole
    };

    using QAbstractListModel::QAbstractListModel;

    void setApps(const QList<ShownApp>& apps);

    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    QList<ShownApp> rows_;
};
