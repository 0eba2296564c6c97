// A connection to logind over the system bus: finds logind, calls its methods and receives its signals.
//
// The connection is made without Qt's own handshake with the bus, which would block the thread that handles
// all D-Bus traffic of this program. All calls are asynchronous. A signal is passed on only when it comes
// from logind or from the bus itself, because any user may send signals on the system bus.
//
// Threads: main thread only.

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <chrono>
#include <cstdint>
#include <functional>

namespace Fenwhirl {

namespace Logind {

[[nodiscard]] QString service();
[[nodiscard]] QString path();
[[nodiscard]] QString managerInterface();
[[nodiscard]] QString propertiesInterface();

// The address of this computer's system bus, in D-Bus notation.
[[nodiscard]] QString systemBusAddress();

// Whether a reply reports an error instead of a result.
[[nodiscard]] bool isError(const QDBusMessage& reply);

} // namespace Logind

class LogindConnection : public QObject {
    Q_OBJECT

public:
    using Reply = std::function<void(const QDBusMessage& reply)>;
    using Silence = std::function<void()>;

    // `address` is the bus's address; `answer` is the time limit for each reply.
    LogindConnection(QString address, std::chrono::milliseconds answer);
    ~LogindConnection() override;
    LogindConnection(const LogindConnection&) = delete;
    LogindConnection& operator=(const LogindConnection&) = delete;

    // Closes any earlier connection and connects again; false where there is no bus. `heard` is emitted for
    // the manager's signals with these names.
    [[nodiscard]] bool open(const QStringList& managerSignals);
    void close();

    [[nodiscard]] bool isOpen() const { return bus_.isConnected(); }

    // Asks the bus for logind's unique name, without starting logind. The reply is an error when logind is
    // not running.
    void find(const Reply& answered, const Silence& silent);

    // logind's unique name on the bus; empty while it has none.
    [[nodiscard]] const QString& owner() const { return owner_; }

    // Takes the name that `find` or `ownerChanged` delivered.
    void setOwner(const QString& owner) { owner_ = owner; }

    // Calls a method of logind. `silent` is called instead of `answered` when there was no answer: the time
    // limit passed or the connection was lost. Neither is called once the connection has been closed.
    void ask(const QString& path, const QString& interface, const QString& method,
             const QVariantList& arguments, const Reply& answered, const Silence& silent);

    // Subscribes to property changes of the object at that path, or ends the subscription.
    void watchProperties(const QString& path);
    void unwatchProperties(const QString& path);

Q_SIGNALS:
    // logind has appeared on the bus with this unique name, or has left it (empty name).
    void ownerChanged(const QString& owner);
    // logind sent a signal.
    void heard(const QDBusMessage& signal);
    // The connection to the bus was lost and is now closed.
    void lost();

private Q_SLOTS:
    void receive(const QDBusMessage& signal);
    void disconnected();

private:
    void askService(const QString& service, const QString& path, const QString& interface,
                    const QString& method, const QVariantList& arguments, const Reply& answered,
                    const Silence& silent);
    void match(const QString& method, const QString& rule);

    const QString address_;
    const std::chrono::milliseconds answer_;
    const QString connectionName_;
    QDBusConnection bus_;
    QString owner_;
    std::uint64_t opened_ = 0; // counts the calls of `close`, so that replies to earlier calls are recognised
};

} // namespace Fenwhirl
