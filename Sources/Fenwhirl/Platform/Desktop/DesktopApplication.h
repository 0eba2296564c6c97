// Creates the application object, with the settings that must be made before and right after it.
//
// Threads: main thread only; once per process, before any other object of Qt's graphical libraries.

#pragma once

#include <QGuiApplication>

#include <functional>
#include <memory>

namespace Fenwhirl {

// Chooses the renderer, creates this system's application object, sets the interface font, and keeps the
// process running when its last window closes. Session managers are told never to restart the program. The
// renderer is the software one where no graphics processor can be used, because the program is then faster
// and a third the size. On macOS this also keeps the program out of the Dock until requested. `argc` and
// `argv` must outlive the object. `meanwhile` is called as soon as the object exists, for what can begin before the
// fonts are ready; it must not measure or draw text. May be empty.
[[nodiscard]] std::unique_ptr<QGuiApplication>
makeDesktopApplication(int& argc, char** argv, const std::function<void()>& meanwhile = {});

} // namespace Fenwhirl
