// Puts the helper's process into a known state, because the set-user-ID copy inherits everything from a
// caller who may be hostile: descriptors, signals, timers, limits, scheduling, folder, masks. Nothing is read
// from the environment.
//
// Part of the set-user-ID executable: needs the C library only. Main thread, before anything else is done.

#pragma once

namespace HelperProcess {

// Opens /dev/null on each closed descriptor below 3, so that nothing opened later is taken for standard input
// or output. False when that is impossible.
[[nodiscard]] bool occupyStandardDescriptors();

// All of it, in this order: the caller's identity shed, so that he can neither stop nor kill the process
// between two writes, but only where the effective user is root; at most 30 seconds to live, and no other
// timer; limits raised as far as the process may; standard descriptors occupied and every other one closed;
// signals to default, those that wait discarded, none blocked but those of a lost reader and of terminals
// that want to stop the process; scheduled as most processes are, without slack in its waits; no core file,
// no debugger; no permissions for created files, root folder. A refused identity change is not an error: the
// controller then refuses the writes. False when the standard descriptors could not be occupied or the folder
// not be left; the process should open nothing then.
[[nodiscard]] bool prepare();

} // namespace HelperProcess
