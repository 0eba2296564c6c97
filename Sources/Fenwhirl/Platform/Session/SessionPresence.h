// Whether the user's session is the one in front, that is, whether its user sits at the computer.
//
// Several users may be logged in at once, each with a Fenwhirl of their own, and only one of these may drive
// the fans. The system decides which: on Linux logind, through the property `Active` of the session that this
// process belongs to; on macOS the workspace, through its notifications of switched sessions.
//
// The session is in front unless the system says otherwise. That includes a missing service, an error, an
// unknown session and no answer, because a computer without the service has one user.
//
// Nothing blocks. If the answer was already known when the object was created, `isSettled` is true at once.
// Otherwise `settled` is emitted with the first answer, or after three seconds without one.
//
// Threads: main thread only.

#pragma once

#include <QObject>

#include <memory>

namespace Fenwhirl {

class SessionPresence : public QObject {
    Q_OBJECT

public:
    // Asks the system, and follows its changes from then on.
    [[nodiscard]] static std::unique_ptr<SessionPresence> create();

    [[nodiscard]] bool isInFront() const { return inFront_; }

    // Whether the system has answered, or is no longer expected to.
    [[nodiscard]] bool isSettled() const { return settled_; }

Q_SIGNALS:
    // The session came to the front or left it.
    void changed();
    // Emitted once, after the `changed` that the first answer may cause.
    void settled();

protected:
    using QObject::QObject;
    // Sets the state and settles.
    void setInFront(bool inFront);
    void settle();

private:
    bool inFront_ = true;
    bool settled_ = false;
};

} // namespace Fenwhirl
