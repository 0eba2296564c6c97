// Keeps the program acting in time while it shows no window.
//
// macOS slows the timers of programs that nobody sees; as long as one of these lives it does not. The
// computer may still go to sleep. Where the system has no such habit it does nothing.
//
// Threads: main thread.

#pragma once

#include <QString>

#include <memory>

class Activity {
public:
    // `reason` is for the system's own tools.
    explicit Activity(const QString& reason);
    ~Activity();
    Activity(const Activity&) = delete;
    Activity& operator=(const Activity&) = delete;

private:
    struct Token; // the system's, held until the end
    std::unique_ptr<Token> token_;
};
