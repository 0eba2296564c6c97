// A session bus for this process alone, which starts no services; and connections to it for the other side.
// While a second one lives it stands in the first one's place.

#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <functional>

class PrivateBus {
public:
    enum class Names { free, refused };

    // `names`: whether programs may have names on it.
    explicit PrivateBus(Names names = Names::free);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    // The bus is gone, as after a crash of its own.
    void kill();

    // One more connection, for the code under test or for what it talks to.
    [[nodiscard]] static QDBusConnection connect();

    // Lets the event loop run until the condition holds; false after half a minute.
    [[nodiscard]] static bool waitUntil(const std::function<bool()>& condition);

private:
    QTemporaryDir folder_;
    QProcess daemon_;
    QByteArray addressBefore_;
};
