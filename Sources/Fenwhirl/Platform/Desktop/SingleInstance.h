// Lets one user run the program once: two of them would drive the same fans against each other.
//
// The first start holds a lock for the life of the process. A later start finds it held, asks the first one
// to show itself, and is expected to end. The lock is released by the kernel however the process ends.
//
// On Linux the first one also has the name com.fenwhirl.app on the session bus, which tells it to starts
// whose lock is in another place. A stranger who has that name is taken for nobody. The request travels over
// that bus (org.freedesktop.Application), and where there is none or it refuses, through a named
// pipe beside the lock, in the user's runtime folder. On macOS the system itself starts a bundle only once
// and reports a second start, and a click on the Dock icon, as "reopen"; what it does not see (the executable
// started in a terminal, a second copy of the bundle) meets the lock in the user's Application Support, and
// the pipe.
//
// Threads: main thread only, after the application object exists.

#pragma once

#include <QObject>

#include <memory>

class SingleInstance : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static std::unique_ptr<SingleInstance> create();

    // Whether this process is the first; asked once, before anything else is set up. Where nobody
    // can tell (no place for a lock) it counts as first.
    [[nodiscard]] virtual bool becomeFirst() = 0;
    // Asks the first process to show its window; waits a few seconds at most (Linux) or not at all.
    virtual void raiseFirst() = 0;
    // Has the first process do something by name, without showing itself; waits as `raiseFirst`. False when
    // it surely was not told.
    [[nodiscard]] virtual bool tellFirst(const QString& action) = 0;

Q_SIGNALS:
    // Another start wants this process to show itself. `token` is the desktop's permission to take the focus,
    // empty where there is none.
    void raiseRequested(const QString& token);
    // Another start, or an entry of the desktop's menu, wants this process to do something. The name is
    // whatever somebody sent.
    void actionRequested(const QString& action);

protected:
    using QObject::QObject;
};
