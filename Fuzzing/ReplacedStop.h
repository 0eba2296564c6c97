// Replaces the function with which the core ends the process, so that a fuzz target can distinguish a
// justified stop from a crash.

#pragma once

#include <functional>

namespace Fenwhirl {

// Runs the operation. Returns true if it ended with a broken precondition.
[[nodiscard]] bool stops(const std::function<void()>& operation);

} // namespace Fenwhirl
