#include "Fenwhirl/HelperClient/GuardLink.h"

#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"
#include "Guard/GuardRecord.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace Fenwhirl {

static_assert(HelperClient::helperPath == GuardRecord::helperPath,
              "the guard runs the very helper that we run");

GuardLink::GuardLink(std::string guardPath, std::function<void(pid_t)> started)
    : guardPath_(std::move(guardPath))
    , started_(std::move(started))
    , record_(record({})) {
    start();
}

GuardLink::~GuardLink() {
    pipe_.close();
    // A dismissed guard ends at once. One that is acting is left to the system.
    if (guard_) {
        waitpid(*guard_, nullptr, WNOHANG);
    }
}

void GuardLink::send(const HandBack& handBack) {
    std::string next = record(handBack);
    if (isFinished_ || next == record_) {
        return;
    }
    record_ = std::move(next);
    // Only the newest record matters. A line that the pipe accepted in part must still be completed.
    pending_.erase(isWithinLine_ ? pending_.find('\n') + 1 : 0);
    pending_ += record_;
    flush();
}

void GuardLink::keepAlive() {
    if (isFinished_) {
        return;
    }
    if (!guard_ || hasGuardEnded()) {
        start();
        return;
    }
    if (pending_.empty()) {
        pending_ += GuardRecord::signOfLife;
    }
    flush();
}

void GuardLink::finish() {
    isFinished_ = true;
    pending_ += GuardRecord::orderlyEnd;
    flush();
    pipe_.close();
}

std::string GuardLink::record(const HandBack& handBack) {
    std::string line;
    switch (handBack.scope) {
    case HandBack::Scope::nothing:
        line = GuardRecord::nothing;
        break;
    case HandBack::Scope::allFans:
        line = GuardRecord::allFans;
        break;
    case HandBack::Scope::indices:
        line = GuardRecord::fans;
        for (const int index : handBack.indices) {
            line += ' ' + std::to_string(index);
        }
        for (const int index : handBack.pinned) {
            line += std::string(" ") + GuardRecord::pinnedMark + std::to_string(index);
        }
        break;
    }
    line += '\n';
    return line.size() <= GuardRecord::longestLine ? line : std::string(GuardRecord::allFans) + '\n';
}

void GuardLink::start() {
    (void)std::signal(SIGPIPE, SIG_IGN);
    guard_.reset();
    pipe_.close();
    auto pipe = Pipe::make();
    if (!pipe || fcntl(pipe->writeEnd.number(), F_SETFL, O_NONBLOCK) != 0) {
        return;
    }
    // The record waits in the pipe before the guard exists, which then knows its fans even if this process is killed
    // at once.
    pipe_ = std::move(pipe->writeEnd);
    pending_ = record_;
    isWithinLine_ = false;
    flush();
    guard_ = startChild(guardPath_, {}, ChildEnvironment::empty, pipe->readEnd.number(), true);
    if (!guard_) {
        pipe_.close();
        return;
    }
    if (started_) {
        started_(*guard_);
    }
}

void GuardLink::flush() {
    while (pipe_.isOpen() && !pending_.empty()) {
        const ssize_t written = write(pipe_.number(), pending_.data(), pending_.size());
        if (written > 0) {
            const auto count = static_cast<std::size_t>(written);
            isWithinLine_ = pending_[count - 1] != '\n';
            pending_.erase(0, count);
        } else if (errno != EINTR) {
            return; // full, or the guard is gone; keepAlive deals with both
        }
    }
}

bool GuardLink::hasGuardEnded() {
    const pid_t ended = waitpid(*guard_, nullptr, WNOHANG);
    return ended == *guard_ || (ended < 0 && errno == ECHILD);
}

} // namespace Fenwhirl
