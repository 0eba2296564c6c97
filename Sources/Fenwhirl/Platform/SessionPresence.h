// Whether the user's session is the one in front: the one whose user sits before the computer.
//
// Several users may be logged in at once, each with a Fenwhirl of their own, and only one of these may drive
// the fans. Which one is the system's to say: on Linux logind, by the property `Active` of the session that
// this process belongs to; on macOS the workspace, by its notifications of switched sessions.
//
// Where nobody says otherwise (no such service, an error, a session that it does not know, no answer) the
// session is in front: a computer without the service has one user.
//
// Nothing is waited for. An answer that was already there when the object was made is `isSettled` at once;
// otherwise `settled` comes with the first answer, or after three seconds without one.
//
// Threads: main thread only.

#pragma once

#include <QObject>

#include <memory>

class SessionPresence : public QObject {
    Q_OBJECT

public:
    // Asks the system, and follows what it says from then on.
    [[nodiscard]] static std::unique_ptr<SessionPresence> create();

    [[nodiscard]] bool isInFront() const { return inFront_; }

    // Whether the system has answered, or will not.
    [[nodiscard]] bool isSettled() const { return settled_; }

Q_SIGNALS:
    // The session came to the front or left it.
    void changed();
    // Once, after the `changed` that the first answer brings.
    void settled();

protected:
    using QObject::QObject;
    // What is known from now on; also settles.
    void setInFront(bool inFront);
    void settle();

private:
    bool inFront_ = true;
    bool settled_ = false;
};
