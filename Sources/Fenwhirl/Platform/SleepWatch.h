// Says that the computer is about to sleep, in time to put things in order first, and that it is awake again.
//
// On Linux logind says so and is asked to wait: for `ready`, and never longer than a second and a half. Where
// there is no such service, or it does not answer, nothing is ever said, and nothing is waited for. On macOS
// nothing is said.
//
// Threads: main thread only.

#pragma once

#include <QObject>

#include <memory>

class SleepWatch : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static std::unique_ptr<SleepWatch> create();

    // Everything is in order: the computer may sleep. Nothing when it is not about to.
    virtual void ready() = 0;

Q_SIGNALS:
    // In turns, beginning with `goingToSleep`. A sleep that came to nothing ends with `awake`, too.
    void goingToSleep();
    void awake();

protected:
    using QObject::QObject;
};
