#include "Fenwhirl/Platform/Toolkit/MainThreadInbox.h"

#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <utility>

namespace Fenwhirl {

namespace {

QEvent::Type wakeUpType() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

} // namespace

struct MainThreadInbox::State {
    Mutex mutex;
    std::deque<std::function<void()>> pending FENWHIRL_GUARDED_BY(mutex);
    std::unique_ptr<QObject> receiver FENWHIRL_GUARDED_BY(mutex); // null once the inbox is closed
    bool isWakeUpSent FENWHIRL_GUARDED_BY(mutex) = false;         // and has not arrived yet
    int deliveries FENWHIRL_GUARDED_BY(mutex) = 0;                // nested, as work may run an event loop

    void begin() {
        const MutexLock lock(mutex);
        isWakeUpSent = false;
        ++deliveries;
    }

    void end() {
        const MutexLock lock(mutex);
        --deliveries;
    }

    // The next piece of work; an empty function when there is none or the inbox has been closed.
    std::function<void()> next() {
        const MutexLock lock(mutex);
        if (!receiver || pending.empty()) {
            return {};
        }
        auto work = std::move(pending.front());
        pending.pop_front();
        if (!pending.empty()) {
            wakeUp(); // this work may run an event loop, which must not leave the rest waiting
        }
        return work;
    }

    void wakeUp() FENWHIRL_REQUIRES(mutex) {
        if (!std::exchange(isWakeUpSent, true)) {
            QCoreApplication::postEvent(receiver.get(), new QEvent(wakeUpType()));
        }
    }
};

class MainThreadInbox::Receiver : public QObject {
public:
    explicit Receiver(const std::shared_ptr<State>& state) : state_(state) {}

    // Called for wake-ups only: nothing else sends this object custom events.
    void customEvent(QEvent* /*event*/) override {
        // The work may destroy the inbox, which owns this object, so only the local pointer is used.
        if (const auto state = state_.lock()) {
            state->begin();
            while (const auto work = state->next()) {
                work();
            }
            state->end();
        }
    }

private:
    std::weak_ptr<State> state_;
};

MainThreadInbox::Sender::Sender(std::shared_ptr<State> state) : state_(std::move(state)) {}

void MainThreadInbox::Sender::post(std::function<void()> work) const {
    const MutexLock lock(state_->mutex);
    if (!state_->receiver) {
        return;
    }
    state_->pending.push_back(std::move(work));
    state_->wakeUp();
}

MainThreadInbox::MainThreadInbox() : state_(std::make_shared<State>()) {
    mainThread.assertIsCurrent();
    const MutexLock lock(state_->mutex);
    state_->receiver = std::make_unique<Receiver>(state_);
}

MainThreadInbox::~MainThreadInbox() {
    mainThread.assertIsCurrent();
    std::unique_ptr<QObject> receiver;
    std::deque<std::function<void()>> dropped; // destroyed outside the lock: it may own a sender's last copy
    const MutexLock lock(state_->mutex);
    receiver = std::move(state_->receiver);
    dropped.swap(state_->pending);
    if (state_->deliveries > 0) {
        receiver.release()->deleteLater(); // its customEvent is still on the call stack
    }
}

MainThreadInbox::Sender MainThreadInbox::sender() const {
    return Sender(state_);
}

} // namespace Fenwhirl
