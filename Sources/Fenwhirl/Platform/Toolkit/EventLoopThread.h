// A named thread with an event loop, for one piece of work that depends on Qt signals, such as a network
// request.
//
// The work receives the loop, creates its objects, runs the loop until it has its result, and returns; then
// the thread ends. The destructor ends the loop, even if it is not running yet, and waits for the work to
// return. An owner whose members the work uses must therefore declare the thread last.
//
// QThread would do the same, but data that passes between it and its creator is protected by locks inside Qt,
// which the thread sanitizer cannot see. Here the sanitizer can check every hand-over.
//
// Threads: created and destroyed on the same thread, which is not the one that it runs. Work must not throw.

#pragma once

#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <functional>
#include <string>
#include <thread>

class QEventLoop;

namespace Fenwhirl {

class EventLoopThread {
public:
    // Calls `loop.exec()` itself, once.
    using Work = std::function<void(QEventLoop& loop)>;

    EventLoopThread(std::string label, Work work);
    ~EventLoopThread();
    EventLoopThread(const EventLoopThread&) = delete;
    EventLoopThread& operator=(const EventLoopThread&) = delete;
    EventLoopThread(EventLoopThread&&) = delete;
    EventLoopThread& operator=(EventLoopThread&&) = delete;

    // Makes a loop end as soon as it runs, even if it is not running yet. Any thread, while the loop exists.
    static void end(QEventLoop& loop);

private:
    void run();

    const std::string label_;
    const Work work_;
    Mutex mutex_;
    QEventLoop* loop_ FENWHIRL_GUARDED_BY(mutex_) = nullptr; // null unless the work is using it
    bool ending_ FENWHIRL_GUARDED_BY(mutex_) = false;
    std::thread thread_; // last, because the thread starts at once and uses the members above
};

} // namespace Fenwhirl
