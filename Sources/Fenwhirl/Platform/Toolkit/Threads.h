// Annotations that say which code runs on which thread, so that the compiler can check it.
//
// The program has few threads, and each piece of state belongs to one of them. A piece of state names its
// owner with FENWHIRL_GUARDED_BY, and a function that uses it says FENWHIRL_REQUIRES. A function that has
// just arrived on a thread (a slot, or work run by a queue) begins with the owner's `assertIsCurrent`. That
// also checks at run time and aborts the process on the wrong thread, because going on would be a data race.
// clang rejects code that breaks these rules; for other compilers the annotations are empty.
//
// `Mutex` and `MutexLock` are the standard mutex and lock with the same annotations, for the little state
// that several threads share.

#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>

#if defined(__clang__)
#    define FENWHIRL_THREAD_ATTRIBUTE(attribute) __attribute__((attribute))
#else
#    define FENWHIRL_THREAD_ATTRIBUTE(attribute)
#endif

#define FENWHIRL_CAPABILITY(name) FENWHIRL_THREAD_ATTRIBUTE(capability(name))
#define FENWHIRL_SCOPED_CAPABILITY FENWHIRL_THREAD_ATTRIBUTE(scoped_lockable)
#define FENWHIRL_GUARDED_BY(owner) FENWHIRL_THREAD_ATTRIBUTE(guarded_by(owner))
#define FENWHIRL_POINTEE_GUARDED_BY(owner) FENWHIRL_THREAD_ATTRIBUTE(pt_guarded_by(owner))
#define FENWHIRL_REQUIRES(owner) FENWHIRL_THREAD_ATTRIBUTE(requires_capability(owner))
#define FENWHIRL_EXCLUDES(owner) FENWHIRL_THREAD_ATTRIBUTE(locks_excluded(owner))
#define FENWHIRL_ACQUIRE(...) FENWHIRL_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define FENWHIRL_RELEASE(...) FENWHIRL_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define FENWHIRL_ASSERTS_CURRENT(owner) FENWHIRL_THREAD_ATTRIBUTE(assert_capability(owner))

namespace Fenwhirl {

// The thread that runs the event loop of the user interface.
class FENWHIRL_CAPABILITY("thread") MainThread {
public:
    [[nodiscard]] static bool isCurrent();
    // Aborts the process on any other thread.
    void assertIsCurrent() const FENWHIRL_ASSERTS_CURRENT(this);
};

inline constexpr MainThread mainThread;

// The one thread that an object belongs to: the first that calls `assertIsCurrent`. For objects that live on
// a queue.
class FENWHIRL_CAPABILITY("thread") ThreadAffinity {
public:
    // Aborts the process on any thread other than the first caller's.
    void assertIsCurrent() const FENWHIRL_ASSERTS_CURRENT(this);

private:
    mutable std::atomic<std::thread::id> owner_ = std::thread::id();
};

class FENWHIRL_CAPABILITY("mutex") Mutex {
public:
    void lock() FENWHIRL_ACQUIRE() { mutex_.lock(); }

    void unlock() FENWHIRL_RELEASE() { mutex_.unlock(); }

private:
    std::mutex mutex_;
};

class FENWHIRL_SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) FENWHIRL_ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }

    ~MutexLock() FENWHIRL_RELEASE() { mutex_.unlock(); }

    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& mutex_;
};

// Gives the calling thread the name under which debuggers and process listings show it. A name that is too
// long for the system is cut off; a failure is ignored.
void nameCurrentThread(const std::string& name);

} // namespace Fenwhirl
