// logind behind SessionPresence on Linux.
//
// The session is looked for in three places, because not every process is in one: the one that logind has
// this process in; else the one named by XDG_SESSION_ID; else (a desktop that is started by the user's
// systemd has its programs in no session) the one that logind calls the user's `Display`. It is looked for
// again whenever a session begins or ends, and when logind starts again.
//
// A logind that went away is usually being updated: what it said last counts for ten seconds more, so that
// two users' programs do not meet at the fans meanwhile.
//
// Threads: main thread only. Tests make it with a bus, an identity and times of their own.

#pragma once

#include "Fenwhirl/Platform/LogindConnectionLinux.h"
#include "Fenwhirl/Platform/SessionPresence.h"

#include <QDBusMessage>
#include <QString>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include <chrono>
#include <cstdint>
#include <functional>

// Who asks.
struct SessionSeeker {
    uint process = 0; // its number
    QString session;  // the name of its session, as its environment says; may be empty
    uint user = 0;    // its number

    [[nodiscard]] static SessionSeeker thisProcess();
};

struct SessionPatience {
    std::chrono::milliseconds settle = std::chrono::seconds(3); // until `settled` without an answer
    std::chrono::milliseconds answer = std::chrono::seconds(5); // for each question
    std::chrono::milliseconds loss = std::chrono::seconds(10);  // what was said last counts that much longer
    std::chrono::milliseconds again = std::chrono::seconds(10); // until a lost bus or a silent logind is
                                                                // tried again
};

class SessionPresenceLinux : public SessionPresence {
    Q_OBJECT

public:
    // `address`: of the bus, in D-Bus's notation.
    SessionPresenceLinux(QString address, SessionSeeker seeker, SessionPatience patience = {});
    ~SessionPresenceLinux() override;
    SessionPresenceLinux(const SessionPresenceLinux&) = delete;
    SessionPresenceLinux& operator=(const SessionPresenceLinux&) = delete;

private:
    using Reply = LogindConnection::Reply;

    void heard(const QDBusMessage& signal);
    void disconnected();

    void connectToBus();
    void leaveBus();
    // What was said last counts a little longer, and the bus or logind is tried again.
    void lose();
    void find();
    void takeOwner(const QString& owner);
    void searchByProcess();
    void searchByName();
    void searchByUser();
    // Watches the session at that path; `otherwise` is called when it is not one that a user sits before.
    void follow(const QString& path, const std::function<void()>& otherwise);
    void watch(const QString& path);
    void readActive();
    void take(const QVariant& active);
    // Nobody knows the session.
    void giveUp();

    // The answer is dropped when meanwhile the search began anew. What gets no answer at all ends it.
    void ask(const QString& path, const QString& interface, const QString& method,
             const QVariantList& arguments, const Reply& answered);
    // The reply and the silence of a question of this search.
    [[nodiscard]] Reply ofThisSearch(const Reply& answered);
    [[nodiscard]] LogindConnection::Silence silenceOfThisSearch();

    const SessionSeeker seeker_;
    LogindConnection logind_;
    QString session_; // the path of the watched session; empty while there is none
    std::uint64_t search_ = 0;
    bool wasAnswered_ = false; // by anybody on the bus, ever
    QTimer loss_;
    QTimer again_;
};
