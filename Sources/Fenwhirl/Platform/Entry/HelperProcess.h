// Puts the helper's process into a known state, because the set-user-ID copy inherits everything from a
// caller who may be hostile: descriptors, signals, limits, folder, masks. Nothing is read from the
// environment.
//
// Part of the set-user-ID executable: needs the C library only. Main thread, before anything else is done.

#pragma once

namespace HelperProcess {

// Opens /dev/null on each closed descriptor below 3, so that nothing opened later is taken for standard input
// or output. False when that is impossible.
[[nodiscard]] bool occupyStandardDescriptors();

// All of it, in this order: standard descriptors occupied and every other one closed; signals to default
// (SIGPIPE ignored: a reader that went away is no reason to die), none blocked, those that wait discarded; no
// core file, no debugger; soft limits raised to the hard ones; no permissions for created files, root folder;
// the caller's identity shed, so that he can neither stop nor kill the process between two writes; at most 30
// seconds to live. A refused identity change is not an error: the controller then refuses the writes. False
// when the standard descriptors could not be occupied; the process should end then.
[[nodiscard]] bool prepare();

} // namespace HelperProcess
