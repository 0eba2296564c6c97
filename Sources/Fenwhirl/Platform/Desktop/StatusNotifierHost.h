// Watches whether the desktop can show status notifier items at all: whether the watcher's service is there
// and a host has registered with it; and which program that is.
//
// Nothing else may be concluded from: items made for an absent host never appear, not even when the host
// comes later, so they have to be announced anew each time `availableChanged` says true.
//
// Threads: main thread only; all calls are asynchronous. Linux only.

#pragma once

#include <QDBusConnection>
#include <QObject>

class StatusNotifierHost : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierHost(QDBusConnection bus, QObject* parent = nullptr);

    [[nodiscard]] bool isAvailable() const { return available_; }

    // The name of the program that is the watcher ("xfce4-panel"), which mostly is the host, too: the
    // protocol has no word for what a host can show, so it is known by its name. Empty when nobody can tell.
    [[nodiscard]] QString program() const { return program_; }

    [[nodiscard]] static QString watcherService();
    [[nodiscard]] static QString watcherPath();

Q_SIGNALS:
    // The answer is known for the first time, or it changed, or the watcher was replaced by another one.
    void availableChanged();

private Q_SLOTS:
    void ask();

private:
    void askForProgram();
    void setAvailable(bool available);

    QDBusConnection bus_;
    QString program_;
    bool available_ = false;
    bool known_ = false;
};
