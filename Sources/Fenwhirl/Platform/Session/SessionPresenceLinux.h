// SessionPresence on Linux, by means of logind.
//
// Not every process is in a session, so three ways are tried in turn: the session that logind assigns to this
// process; the one named by XDG_SESSION_ID; and the one that logind names as the user's `Display`, for a
// desktop that the user's systemd starts, whose programs are in no session. The search is repeated whenever a
// session begins or ends, and when logind restarts.
//
// A logind that disappears is usually being updated. The last state that it reported therefore stays valid
// for ten more seconds, so that the programs of two users do not drive the fans at the same time.
//
// Threads: main thread only. Tests pass a bus, an identity and times of their own.

#pragma once

#include "Fenwhirl/Platform/Session/LogindConnectionLinux.h"
#include "Fenwhirl/Platform/Session/SessionPresence.h"

#include <QDBusMessage>
#include <QString>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include <chrono>
#include <cstdint>
#include <functional>

namespace Fenwhirl {

// Identifies the process whose session is looked for.
struct SessionQuery {
    uint process = 0; // process id
    QString session;  // the session's name from the environment; may be empty
    uint user = 0;    // user id

    [[nodiscard]] static SessionQuery thisProcess();
};

struct SessionTimeouts {
    std::chrono::milliseconds settle = std::chrono::seconds(3); // until `settled` without an answer
    std::chrono::milliseconds answer = std::chrono::seconds(5); // time limit for each reply
    std::chrono::milliseconds loss = std::chrono::seconds(10);  // how long the last state stays valid
    std::chrono::milliseconds again = std::chrono::seconds(10); // until a lost bus or a silent logind is
                                                                // tried again
};

class SessionPresenceLinux : public SessionPresence {
    Q_OBJECT

public:
    // `address` is the bus's address, in D-Bus notation.
    SessionPresenceLinux(QString address, SessionQuery seeker, SessionTimeouts patience = {});
    ~SessionPresenceLinux() override;
    SessionPresenceLinux(const SessionPresenceLinux&) = delete;
    SessionPresenceLinux& operator=(const SessionPresenceLinux&) = delete;

private:
    using Reply = LogindConnection::Reply;

    void heard(const QDBusMessage& signal);
    void disconnected();

    void connectToBus();
    void leaveBus();
    // Lets the last state stay valid for a little longer, and schedules another attempt with the bus or
    // logind.
    void lose();
    void find();
    void takeOwner(const QString& owner);
    void searchByProcess();
    void searchByName();
    void searchByUser();
    // Watches the session at that path. Calls `otherwise` when it is not a session that a user sits at.
    void follow(const QString& path, const std::function<void()>& otherwise);
    void watch(const QString& path);
    void readActive();
    void take(const QVariant& active);
    // Stops the search, because logind does not know the session.
    void giveUp();

    // The answer is dropped if a new search has begun meanwhile. A question without an answer ends the
    // search.
    void ask(const QString& path, const QString& interface, const QString& method,
             const QVariantList& arguments, const Reply& answered);
    // Wrap the callbacks of a question so that they are dropped once a new search has begun.
    [[nodiscard]] Reply ofThisSearch(const Reply& answered);
    [[nodiscard]] LogindConnection::Silence silenceOfThisSearch();

    const SessionQuery seeker_;
    LogindConnection logind_;
    QString session_;          // the path of the watched session; empty while there is none
    std::uint64_t search_ = 0; // number of the current search; answers to earlier ones are dropped
    bool wasAnswered_ = false; // whether there has ever been an answer over this bus
    QTimer loss_;
    QTimer again_;
};

} // namespace Fenwhirl
