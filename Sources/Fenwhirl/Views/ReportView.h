// The diagnostic report of the settings page: whether it includes the fan test, whether one is being created,
// and where the finished report goes.
//
// Threads: main thread only; the monitor creates the report in the background.

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace Fenwhirl {

// Asks where to save a file, proposing a name; returns an empty path when the user declines.
using AskSavePath = std::function<QString(const QString& proposedName)>;
// Shows and selects a file in the file manager.
using RevealFile = std::function<void(const QString& path)>;

// Asks for a path, writes the report there atomically as UTF-8, and shows the file. Nothing happens when the
// user declines. A failure to write is silent: what is at that path is then an older file or none, and is not
// shown.
void saveReport(const QString& text, const AskSavePath& askSavePath, const RevealFile& revealFile);

class ReportView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool withFanTest MEMBER withFanTest_ NOTIFY withFanTestChanged)
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)

public:
    using Save = std::function<void(const QString& text)>;

    // `save` receives each finished report.
    ReportView(Monitor& monitor, Save save, QObject* parent = nullptr);

    [[nodiscard]] bool busy() const { return busy_; }

    // Starts creating a report; ignored while one is being created.
    Q_INVOKABLE void create();

Q_SIGNALS:
    void withFanTestChanged();
    void busyChanged();

private:
    Monitor& monitor_;
    Save save_;
    bool withFanTest_ = false;
    bool busy_ = false;
};

} // namespace Fenwhirl
