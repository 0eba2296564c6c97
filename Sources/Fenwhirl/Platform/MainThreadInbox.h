// The road back: other threads hand work to the main thread, which runs it from its event loop in the order
// of handing over.
//
// The inbox belongs to an object of the main thread and dies with it; what was not run by then is dropped.
// Its senders are values that may outlive it: posting to a closed inbox does nothing. So a slow task may
// finish after its owner is gone, without locks or weak pointers in the task.
//
// Threads: the inbox is made and destroyed on the main thread (with an application object to run the loop);
// senders are copied and used on any thread. Work must not throw. One wake-up serves all the work that came
// in before it.

#pragma once

#include <functional>
#include <memory>

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
