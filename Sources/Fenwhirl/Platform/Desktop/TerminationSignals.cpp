#include "Fenwhirl/Platform/Desktop/TerminationSignals.h"

#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

std::atomic<int> signalPipe = -1;
static_assert(std::atomic<int>::is_always_lock_free, "read in a signal handler");

void writeByte(int /*signal*/) {
    const int savedErrno = errno;
    const char byte = 0;
    // If the pipe is full, a request to end is already in it.
    [[maybe_unused]] const ssize_t written = write(signalPipe.load(), &byte, 1);
    errno = savedErrno;
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (::pipe(pipe_.data()) != 0) {
        return;
    }
    for (const int end : pipe_) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    signalPipe = pipe_[1];
    auto* notifier = new QSocketNotifier(pipe_[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &TerminationSignals::drain);

    struct sigaction action = {};
    action.sa_handler = writeByte;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < handled.size(); ++i) {
        sigaction(handled.at(i), nullptr, &previous_.at(i));
        if (previous_.at(i).sa_handler != SIG_IGN) {
            sigaction(handled.at(i), &action, nullptr);
        }
    }
}

TerminationSignals::~TerminationSignals() {
    if (pipe_[0] < 0) {
        return;
    }
    for (std::size_t i = 0; i < handled.size(); ++i) {
        sigaction(handled.at(i), &previous_.at(i), nullptr);
    }
    signalPipe = -1;
    for (const int end : pipe_) {
        close(end);
    }
}

void TerminationSignals::drain() {
    char bytes[16];
    while (read(pipe_[0], bytes, sizeof bytes) > 0) {
    }
    Q_EMIT received();
}

} // namespace Fenwhirl
