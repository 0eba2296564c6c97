// The entry point of the QML module Fenwhirl.Views: the windows and their view models.
//
// The module is linked statically and has no plugin. Call registerViews() before creating a QML engine, and
// add "qrc:/qt/qml" to the engine's import paths. Main thread.

#pragma once

#include <QUrl>

namespace Fenwhirl {

// Makes `import Fenwhirl.Views` and the modules it depends on work. May be called more than once.
void registerViews();

// The QML files of the main window and the status item's panel. Each requires the initial property `models`,
// a ViewModels.
[[nodiscard]] QUrl mainWindowFile();
[[nodiscard]] QUrl menuPanelFile();
// The QML file of the page that the main window shows first.
[[nodiscard]] QUrl firstPageFile();
// The QML file of a question in front of all other windows. It requires `heading`, `message`, `acceptText`
// and `laterText`, and emits `accepted`.
[[nodiscard]] QUrl alertWindowFile();

} // namespace Fenwhirl
