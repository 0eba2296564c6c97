#include "Fenwhirl/Platform/Toolkit/SerialQueue.h"

#include "Fenwhirl/Platform/Toolkit/AlternateSignalStack.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <cstdlib>
#include <future>
#include <memory>
#include <utility>

namespace Fenwhirl {

SerialQueue::SerialQueue(std::string label) : label_(std::move(label)), thread_([this] { run(); }) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void SerialQueue::async(std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        pending_.push_back(std::move(work));
    }
    changed_.notify_one();
}

void SerialQueue::asyncNext(std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        pending_.push_front(std::move(work));
    }
    changed_.notify_one();
}

void SerialQueue::sync(const std::function<void()>& work) {
    if (isCurrent()) {
        std::abort();
    }
    // Shared, because the waiting thread may return while the queue is still inside set_value.
    const auto done = std::make_shared<std::promise<void>>();
    async([&work, done] {
        work();
        done->set_value();
    });
    done->get_future().wait();
}

bool SerialQueue::isCurrent() const {
    return std::this_thread::get_id() == thread_.get_id();
}

void SerialQueue::run() {
    const AlternateSignalStack stackForFatalSignals;
    nameCurrentThread(label_);
    for (;;) {
        std::function<void()> work;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return ending_ || !pending_.empty(); });
            if (pending_.empty()) {
                return;
            }
            work = std::move(pending_.front());
            pending_.pop_front();
        }
        work();
    }
}

} // namespace Fenwhirl
