// Work that blocks for long and belongs to no queue: an installation that waits for a password, a report that
// takes seconds.
//
// Each task has a thread of its own, because none may hold up another, and nobody waits for it: the end of
// the process simply ends it. So a task owns what it works with (values, shared state) and answers through a
// MainThreadInbox::Sender. It must not throw.

#pragma once

#include <functional>

void runInBackground(std::function<void()> task);
