// Ensures that one user runs the program only once, because two instances would drive the same fans against
// each other.
//
// The first instance has a lock for the life of the process. A later one finds the lock taken, asks the first
// to show itself, and is expected to end. The kernel releases the lock however the process ends.
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

#include <memory>

class SingleInstance : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static std::unique_ptr<SingleInstance> create();

    // Whether this process is the first instance. Call this once, before anything else is set up. If it
    // cannot be determined (nowhere to put a lock), the process counts as the first.
    [[nodiscard]] virtual bool becomeFirst() = 0;
    // Asks the first instance to show its window; waits for a few seconds at most (Linux) or not at all.
    virtual void raiseFirst() = 0;
    // Has the first instance perform a named action without showing itself; waits as `raiseFirst` does. False
    // when the request certainly did not arrive.
    [[nodiscard]] virtual bool notifyFirst(const QString& action) = 0;

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
