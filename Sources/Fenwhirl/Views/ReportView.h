// The diagnostic report of the settings page: whether it includes the fan test, whether it is being made, and
// where it goes when it is ready.
//
// Threads: main thread only; the monitor makes the report in the background.

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

// Asks where to put a file of the proposed name; empty when the user declines.
using AskSavePath = std::function<QString(const QString& proposedName)>;
// Shows a file, selected, in the file browser.
using RevealFile = std::function<void(const QString& path)>;

// Asks for a place, writes the report there in one go as UTF-8, and shows the file. A failure to write is
// silent: what lies there then is an older file or none, and is not shown. Nothing happens when the user
// declines.
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

    // Begins a report; ignored while one is being made.
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
