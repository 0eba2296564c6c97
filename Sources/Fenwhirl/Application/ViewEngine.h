// The QML engine behind all windows.
//
// Threads: main thread only; the application object must exist before the engine and must outlive it.

#pragma once

#include <QQmlComponent>
#include <QQmlEngine>

#include <memory>
#include <vector>

namespace Fenwhirl {

// Sets that the engines made later translate a function of the views into machine code only after a hundred calls. Qt
// does so after three, and then a start translates some seventy functions that are not needed often enough to repay it.
// To be called before the first thread is started, because Qt reads this from the environment. A user's own setting
// remains.
void setTranslationThreshold();

// Makes an engine that knows the program's views, symbols and images.
[[nodiscard]] std::unique_ptr<QQmlEngine> makeViewEngine();

// An engine and what it is loading. As long as `loading` exists, a component that is made from one of these files
// waits for that instead of loading it again.
struct PreparedViews {
    std::unique_ptr<QQmlEngine> engine;
    std::vector<std::unique_ptr<QQmlComponent>> loading; // after the engine, so that it is destroyed first
};

// Lets the engine's own thread load the main window and its first page, while this one does other work. For a start
// that opens this window in any case.
[[nodiscard]] PreparedViews prepareMainWindow();

// Does what the engine's thread waits for: it needs the main thread when it loads the plugin of a module, and would
// otherwise stand still until the event loop runs. To be called now and then meanwhile.
void continueLoading();

} // namespace Fenwhirl
