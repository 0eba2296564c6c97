// The clock for control decisions.
//
// It keeps counting while the computer sleeps, because a fan's target must be sent again soon after waking.
// It never jumps, unlike the wall clock, which can be set back by a day. Thread-safe.

#pragma once

#include <chrono>

namespace Fenwhirl {

// Seconds since an arbitrary origin.
[[nodiscard]] std::chrono::duration<double> continuousTime();

} // namespace Fenwhirl
