// Stands in for the way in which the core ends the process, so that a fuzz target can tell a justified stop
// from a crash: within `stops`, a broken precondition comes back as true.

#pragma once

#include <functional>

// Runs the operation; whether it ended in a broken precondition.
[[nodiscard]] bool stops(const std::function<void()>& operation);
