// A session bus for this process alone, which starts no services; and connections to it for the other side.

#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <functional>

class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    // One more connection, for the code under test or for what it talks to.
    [[nodiscard]] static QDBusConnection connect();

    // Lets the event loop run until the condition holds; false after half a minute.
    [[nodiscard]] static bool waitUntil(const std::function<bool()>& condition);

private:
    QTemporaryDir folder_;
    QProcess daemon_;
};
