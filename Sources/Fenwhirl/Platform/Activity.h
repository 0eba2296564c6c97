// Keeps the program acting in time while it shows no window.
//
// macOS slows the timers of programs that nobody sees; as long as one of these lives it does not. The
// computer may still go to sleep. Where the system has no such habit it does nothing.
//
// Threads: main thread.

#pragma once

#include <QString>

class Activity {
public:
    // `reason` is for the system's own tools.
    explicit Activity(const QString& reason);
    ~Activity();
    Activity(const Activity&) = delete;
    Activity& operator=(const Activity&) = delete;

private:
    [[maybe_unused]] void* token_ =
        nullptr; // the system's, held until the end; none where there is nothing to hold
};
