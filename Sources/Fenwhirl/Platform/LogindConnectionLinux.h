// A connection to logind over the system's bus: who it is there, asking it, hearing it.
//
// The connection is made without the library's own handshake, which would wait for the bus on the thread that
// all D-Bus traffic of this program passes through. Everything is asked asynchronously, and a signal counts
// only when it comes from logind or from the bus itself: on the system's bus any user may send one.
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

namespace Logind {

[[nodiscard]] QString service();
[[nodiscard]] QString path();
[[nodiscard]] QString managerInterface();
[[nodiscard]] QString propertiesInterface();

// Where this computer's system bus is, in D-Bus's notation.
[[nodiscard]] QString systemBusAddress();

} // namespace Logind

class LogindConnection : public QObject {
    Q_OBJECT

public:
    using Reply = std::function<void(const QDBusMessage& reply)>;
    using Silence = std::function<void()>;

    // `address`: of the bus. `answer`: how long each question may stay without an answer.
    LogindConnection(QString address, std::chrono::milliseconds answer);
    ~LogindConnection() override;
    LogindConnection(const LogindConnection&) = delete;
    LogindConnection& operator=(const LogindConnection&) = delete;

    // Connects anew; false where there is no bus. `heard` brings the manager's signals of these names.
    [[nodiscard]] bool open(const QStringList& managerSignals);
    void close();

    [[nodiscard]] bool isOpen() const { return bus_.isConnected(); }

    // Asks the bus for logind's own name, without starting one. Answered with an error where there is none.
    void find(const Reply& answered, const Silence& silent);

    // logind's own name on the bus; empty while there is none.
    [[nodiscard]] const QString& owner() const { return owner_; }

    // As `find` or `ownerChanged` told.
    void setOwner(const QString& owner) { owner_ = owner; }

    // Asks logind. `silent` is called instead of `answered` when nobody said anything: the time was over, or
    // the connection. Neither is called once the connection was closed.
    void ask(const QString& path, const QString& interface, const QString& method,
             const QVariantList& arguments, const Reply& answered, const Silence& silent);

    // Brings, or no longer, the changes of the properties of the object at that path.
    void watchProperties(const QString& path);
    void unwatchProperties(const QString& path);

Q_SIGNALS:
    // The bus says that logind came, with its new name, or went, with an empty one.
    void ownerChanged(const QString& owner);
    // A signal of logind's.
    void heard(const QDBusMessage& signal);
    // The bus is gone; the connection is closed.
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
    std::uint64_t opened_ = 0;
};
