// The time that control decisions are made by.
//
// It counts the time that the computer sleeps, because a fan's target must be sent again soon after waking,
// and it never jumps, because the wall clock can be set back by a day. Thread-safe.

#pragma once

#include <chrono>

// Seconds since an arbitrary origin.
[[nodiscard]] std::chrono::duration<double> continuousTime();
