// Watches whether the desktop can show status notifier items, that is, whether the watcher's service is
// running and a host has registered with it; and which program that is.
//
// An item that was announced while there was no host never appears, not even when a host comes later. Items
// must therefore be announced again each time `availableChanged` reports a host.
//
// Threads: main thread only; all calls are asynchronous. Linux only.

#pragma once

#include <QDBusConnection>
#include <QObject>

namespace Fenwhirl {

class StatusNotifierHost : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierHost(QDBusConnection bus, QObject* parent = nullptr);

    [[nodiscard]] bool isAvailable() const { return available_; }

    // The name of the program that runs the watcher ("xfce4-panel"), which is usually the host as well. The
    // protocol does not say what a host can show, so the host is recognised by this name. Empty when it
    // cannot be determined.
    [[nodiscard]] QString program() const { return program_; }

    [[nodiscard]] static QString watcherService();
    [[nodiscard]] static QString watcherPath();

Q_SIGNALS:
    // Emitted when the answer is first known, when it changes, and when another program takes over as the
    // watcher.
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

} // namespace Fenwhirl
