// Puts the helper's process into a known state, because the set-user-ID copy inherits everything from a
// caller who may be hostile: descriptors, signals, timers, limits, scheduling, working folder, masks. Nothing
// is read from the environment.
//
// Part of the set-user-ID executable, so it uses the C library only. Main thread, before anything else is
// done.

#pragma once

namespace Fenwhirl::HelperProcess {

// Opens /dev/null on each closed descriptor below 3, so that nothing opened later is mistaken for standard
// input, output or error. False when that is impossible.
[[nodiscard]] bool occupyStandardDescriptors();

// Performs all steps, in this order:
//
// - If the effective user is root, drops the caller's identity, so that the caller can neither stop nor kill
//   the process between two writes.
// - Limits the process to 30 seconds and turns off all other timers.
// - Raises resource limits as far as the process may.
// - Occupies the standard descriptors and closes all others.
// - Resets signals to their defaults and discards pending ones. Only SIGPIPE and the stop signals of
//   terminals are blocked.
// - Sets the scheduling that most processes have, and timers without slack.
// - Forbids core files and debuggers.
// - Sets a umask that grants others nothing, and makes the root folder the working folder.
//
// A refused change of identity is not an error, because the controller then refuses the writes. Returns false
// when the standard descriptors could not be occupied or the working folder could not be changed; the process
// should then open nothing.
[[nodiscard]] bool prepare();

} // namespace Fenwhirl::HelperProcess
