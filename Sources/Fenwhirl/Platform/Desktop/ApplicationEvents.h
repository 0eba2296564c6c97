// Events that macOS reports to the program beyond what Qt passes on, with the program's answers: the program
// was opened again, or was asked to quit.
//
// The application delegate in DesktopApplicationMacOS.mm receives the events. The answers are here, so that
// they can be tested on other systems. Used only between the sources of this folder.
//
// Threads: main thread only.

#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace Fenwhirl::ApplicationEvents {

// `handler` shows the program. An empty function removes the handler.
void setReopenHandler(std::function<void()> handler);

// `handler` is called when the session ends (log-out, restart, shutdown). It must have done all that needs
// doing before the end when it returns. An empty function removes the handler.
void setSessionEndHandler(std::function<void()> handler);

// The Dock icon was clicked or the program was started again. True if the system should do what it usually
// does, which is to bring visible windows forward; false if the handler has shown the program instead.
[[nodiscard]] bool shouldHandleReopen(bool hasVisibleWindows);

// The program is asked to quit, for these reasons (see quitAnswer). True lets the system end the process as
// soon as this returns; the session end handler has then run. False means that the event loop ends instead,
// after the request has been answered.
[[nodiscard]] bool shouldTerminateNow(std::span<const std::uint32_t> reasons);

} // namespace Fenwhirl::ApplicationEvents
