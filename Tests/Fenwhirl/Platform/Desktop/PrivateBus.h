// A session bus for this process alone that starts no services, with connections to it for the peers of the
// code under test. While a second one exists, it takes the first one's place.

#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace Fenwhirl {

class PrivateBus {
public:
    enum class Names { free, refused };

    // `names`: whether programs may own names on the bus.
    explicit PrivateBus(Names names = Names::free);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    // Ends the bus, as a crash of its daemon would.
    void kill();

    // Opens another connection, for the code under test or for its peer.
    [[nodiscard]] static QDBusConnection connect();

private:
    QTemporaryDir folder_;
    QProcess daemon_;
    QByteArray addressBefore_;
};

} // namespace Fenwhirl
