// Watches whether the desktop can show status notifier items at all: whether the watcher's service is there
// and a host has registered with it.
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

    // Whether the first question has been answered, be it by silence of an absent service.
    [[nodiscard]] bool isKnown() const { return known_; }

    [[nodiscard]] static QString watcherService();
    [[nodiscard]] static QString watcherPath();

Q_SIGNALS:
    // The answer is known for the first time, or it changed, or the watcher was replaced by another one.
    void availableChanged();

private Q_SLOTS:
    void ask();

private:
    void setAvailable(bool available);

    QDBusConnection bus_;
    bool available_ = false;
    bool known_ = false;
};
