#include "Fenwhirl/Platform/Toolkit/EventLoopThread.h"

#include "Fenwhirl/Platform/Toolkit/AlternateSignalStack.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>

#include <utility>

namespace Fenwhirl {

EventLoopThread::EventLoopThread(std::string label, Work work)
    : label_(std::move(label))
    , work_(std::move(work))
    , thread_([this] { run(); }) {}

EventLoopThread::~EventLoopThread() {
    {
        const MutexLock lock(mutex_);
        ending_ = true;
        if (loop_ != nullptr) {
            end(*loop_);
        }
    }
    thread_.join();
}

void EventLoopThread::end(QEventLoop& loop) {
    // An event rather than `quit`, because a loop that is not running yet ignores `quit`.
    QCoreApplication::postEvent(&loop, new QEvent(QEvent::Quit));
}

void EventLoopThread::run() {
    const AlternateSignalStack stackForFatalSignals;
    nameCurrentThread(label_);
    QEventLoop loop;
    {
        const MutexLock lock(mutex_);
        if (ending_) {
            return;
        }
        loop_ = &loop;
    }
    work_(loop);
    const MutexLock lock(mutex_);
    loop_ = nullptr;
}

} // namespace Fenwhirl
