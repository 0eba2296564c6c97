// Keeps the program's timers on time while it shows no window.
//
// macOS throttles the timers of programs whose windows nobody sees. It does not do so while an Activity
// exists. The computer may still go to sleep. Linux does not throttle hidden programs; there this class does
// nothing.
//
// Threads: main thread.

#pragma once

#include <QString>

#include <memory>

namespace Fenwhirl {

class Activity {
public:
    // `reason` is shown by the system's own tools.
    explicit Activity(const QString& reason);
    ~Activity();
    Activity(const Activity&) = delete;
    Activity& operator=(const Activity&) = delete;

private:
    struct Token; // the system's handle of the activity, released in the destructor
    std::unique_ptr<Token> token_;
};

} // namespace Fenwhirl
