// Runs work that blocks for long and belongs to no queue: an installation that waits for a password, or a
// report that takes seconds.
//
// Each task has a thread of its own, so that no task delays another. Nobody waits for a task: when the
// process exits, the task ends with it. A task therefore owns the data that it works with (values, shared
// state) and reports its result through a MainThreadInbox::Sender. It must not throw.

#pragma once

#include <functional>

namespace Fenwhirl {

void runInBackground(std::function<void()> task);

} // namespace Fenwhirl
