// What macOS reports to the program beside what Qt passes on, and what it is answered: being chosen again,
// and being asked to end.
//
// The system's object asks, in DesktopApplicationMacOS.mm; the answers are here, so that they are tested
// where there is no Mac. Used between the sources of this folder.
//
// Threads: main thread only.

#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace ApplicationEvents {

// Shows the program. An empty function takes the handler away.
void setReopenHandler(std::function<void()> handler);

// The session ends (log-out, restart, shutdown): what has to be done before must be done when the handler
// returns. An empty function takes the handler away.
void setSessionEndHandler(std::function<void()> handler);

// The Dock icon was clicked or the program started again. True when the system is to do what it usually does,
// which is to bring shown windows forward; false when the handler has shown the program instead.
[[nodiscard]] bool shouldHandleReopen(bool hasVisibleWindows);

// Somebody asks the program to end, for these reasons (see quitAnswer). True to let the system end the
// process as soon as this returns, with the session's handler done; false when the event loop is going to end
// instead, after whoever asked has the answer.
[[nodiscard]] bool shouldTerminateNow(std::span<const std::uint32_t> reasons);

} // namespace ApplicationEvents
