// The application object and what has to be settled before and right after it is made.
//
// Threads: main thread only; once per process, before any other object of Qt's graphical libraries.

#pragma once

#include <QGuiApplication>

#include <memory>

// Chooses the renderer (software where no graphics processor can be used: it is then faster and a third the
// size), makes the application object of this system, sets the interface font, and leaves the process running
// when its last window closes. On macOS it also keeps the program out of the Dock until asked. `argc` and
// `argv` must outlive the object.
[[nodiscard]] std::unique_ptr<QGuiApplication> makeDesktopApplication(int& argc, char** argv);
