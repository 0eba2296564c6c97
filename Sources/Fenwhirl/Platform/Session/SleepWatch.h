// Reports that the computer is about to sleep, early enough to finish work first, and that it is awake again.
//
// On Linux logind reports this and is asked to wait until `ready` is called, but never longer than a second
// and a half. Where there is no logind, or it does not answer, no signal is ever emitted and nothing is
// delayed. On macOS no signal is emitted.
//
// Threads: main thread only.

#pragma once

#include <QObject>

#include <memory>

namespace Fenwhirl {

class SleepWatch : public QObject {
    Q_OBJECT

public:
    [[nodiscard]] static std::unique_ptr<SleepWatch> create();

    // Says that the work is finished and the computer may sleep. Does nothing when it is not about to sleep.
    virtual void ready() = 0;

Q_SIGNALS:
    // Alternate, beginning with `goingToSleep`. A sleep that was cancelled ends with `awake`, too.
    void goingToSleep();
    void awake();

protected:
    using QObject::QObject;
};

} // namespace Fenwhirl
