#include "Fenwhirl/HelperClient/HelperRun.h"

#include <atomic>
#include <ctime>

namespace Fenwhirl {

namespace {

std::atomic<int> underWay = 0;
std::atomic<bool> isForbidden = false;

static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "a signal handler uses them");

} // namespace

// The order matters: the run is counted before the flag is read. A thread that calls forbid and then reads
// the count therefore sees every run that was still allowed.
HelperRun::HelperRun() : isAllowed_((underWay.fetch_add(1), !isForbidden.load())) {}

HelperRun::~HelperRun() {
    underWay.fetch_sub(1);
}

void HelperRun::forbid() {
    isForbidden.store(true);
}

void HelperRun::waitForOthers(std::chrono::milliseconds patience) {
    constexpr auto step = std::chrono::milliseconds(10);
    const timespec pause = {.tv_sec = 0, .tv_nsec = std::chrono::nanoseconds(step).count()};
    for (auto waited = std::chrono::milliseconds(0); underWay.load() > 0 && waited < patience;
         waited += step) {
        nanosleep(&pause, nullptr);
    }
}

} // namespace Fenwhirl
