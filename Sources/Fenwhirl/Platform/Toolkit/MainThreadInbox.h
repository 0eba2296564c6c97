// Hands work from other threads to the main thread, whose event loop runs it in the order in which it was
// posted.
//
// The inbox belongs to an object of the main thread and is destroyed with it; work that has not run by then
// is dropped. Senders are values that may outlive the inbox: posting to a closed inbox does nothing. A slow
// task may therefore finish after its owner is gone, without locks or weak pointers of its own.
//
// Threads: the inbox is created and destroyed on the main thread (with an application object to run the
// loop); senders are copied and used on any thread. Work must not throw. One wake-up runs all the work that
// was posted before it.

#pragma once

#include <functional>
#include <memory>

namespace Fenwhirl {

class MainThreadInbox {
    struct State;

public:
    class Sender {
    public:
        void post(std::function<void()> work) const;

    private:
        friend class MainThreadInbox;
        explicit Sender(std::shared_ptr<State> state);
        std::shared_ptr<State> state_;
    };

    MainThreadInbox();
    ~MainThreadInbox();
    MainThreadInbox(const MainThreadInbox&) = delete;
    MainThreadInbox& operator=(const MainThreadInbox&) = delete;

    [[nodiscard]] Sender sender() const;

private:
    class Receiver;
    std::shared_ptr<State> state_;
};

} // namespace Fenwhirl
