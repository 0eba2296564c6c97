// Ensures that one user runs the program only once, because two instances would drive the same fans against
// each other.
//
// The first instance has a lock for the life of the process. A later one finds the lock taken, asks the first
// to show itself, and is expected to end. The kernel releases the lock however the process ends.
//
// While the first instance ends, which takes as long as handing the fans back, it keeps the lock but no
// longer listens. A start in that time waits, and becomes the first.
//
// On Linux the first instance also owns the name com.fenwhirl.app on the session bus, so that an instance
// whose lock is in another folder finds it. If a different program owns that name, it is ignored. The request
// goes over that bus (org.freedesktop.Application) or, where there is no bus or it refuses, through a named
// pipe beside the lock, in the user's runtime folder. On macOS the system itself starts a bundle only once,
// and reports a second start or a click on the Dock icon as "reopen". For starts that it does not see (the
// executable run in a terminal, a second copy of the bundle) there are the lock in the user's Application
// Support folder and the pipe.
//
// Threads: main thread only, after the application object exists.

#pragma once

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace Fenwhirl {

class SingleInstance : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static std::unique_ptr<SingleInstance> create();

    enum class Start {
        first,      // this process is the first instance
        handedOver, // another one is, and has received the request
        unanswered, // another one is, but received no request before the time was over
    };

    // How long a start waits for an instance that does not listen; an instance that hands the fans back may
    // take more than half a minute to end.
    static constexpr std::chrono::seconds patience = std::chrono::seconds(40);
    static constexpr std::chrono::milliseconds pause = std::chrono::milliseconds(100); // between two attempts

    // Makes this process the first instance, or passes its request on with `tellFirst`, which returns whether
    // the request arrived. Tries both in turn until one succeeds. Blocks for at most `limit` and one more
    // attempt. Call this before anything else is set up.
    [[nodiscard]] Start start(const std::function<bool()>& tellFirst,
                              std::chrono::milliseconds limit = patience);

    // Whether this process is the first instance. After false it may be called again. If it cannot be
    // determined (nowhere to put a lock), the process counts as the first.
    [[nodiscard]] virtual bool becomeFirst() = 0;
    // Asks the first instance to show its window; waits for a few seconds at most (Linux) or not at all.
    // False when the request certainly did not arrive.
    [[nodiscard]] virtual bool raiseFirst() = 0;
    // Has the first instance perform a named action without showing itself; otherwise like `raiseFirst`.
    [[nodiscard]] virtual bool notifyFirst(const QString& action) = 0;
    // For the first instance when it is about to end: receives no more requests, but stays the first until it
    // is destroyed.
    virtual void stopListening() = 0;

Q_SIGNALS:
    // Another instance asks this process to show itself. `token` is the desktop's permission to take the
    // focus; empty where there is none.
    void raiseRequested(const QString& token);
    // Another instance, or an entry of the desktop's menu, asks this process to perform an action. The name
    // is not validated.
    void actionRequested(const QString& action);

protected:
    using QObject::QObject;
};

} // namespace Fenwhirl
