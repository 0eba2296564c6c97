// What the system's application object reports beside what Qt passes on: being chosen again, and being asked
// to end.
//
// macOS only, between the sources of this folder. Qt keeps a delegate that was set before its own application
// object was made and forwards to it what is listed here.
//
// Threads: main thread only.

#pragma once

#include <functional>

namespace ApplicationEvents {

// Sets our delegate; before QGuiApplication is made, once.
void install();

// The Dock icon was clicked or the program started again while no window is shown.
void setReopenHandler(std::function<void()> handler);

// The session ends (log-out, restart, shutdown): what has to be done before must be done when the handler
// returns.
void setSessionEndHandler(std::function<void()> handler);

} // namespace ApplicationEvents
