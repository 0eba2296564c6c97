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

void SerialQueue::every(std::chrono::milliseconds period, std::function<void()> work) {
    {
        const std::lock_guard lock(mutex_);
        recurrence_ = {period, Clock::now() + period,
                       std::make_shared<const std::function<void()>>(std::move(work))};
    }
    changed_.notify_one(); // the thread may be waiting without a time
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
    while (const std::function<void()> work = next()) {
        work();
    }
}

std::function<void()> SerialQueue::next() {
    std::unique_lock lock(mutex_);
    while (!hasNews()) {
        if (!recurrence_) {
            changed_.wait(lock);
        } else if (const auto now = Clock::now(); now < recurrence_->due) {
            changed_.wait_until(lock, Clock::time_point(recurrence_->due));
        } else {
            // After a delay, counted from now on.
            const auto following = recurrence_->due + recurrence_->period;
            recurrence_->due = now < following ? following : now + recurrence_->period;
            return [work = recurrence_->work] { (*work)(); };
        }
    }
    if (pending_.empty()) {
        return {};
    }
    auto work = std::move(pending_.front());
    pending_.pop_front();
    return work;
}

} // namespace Fenwhirl
