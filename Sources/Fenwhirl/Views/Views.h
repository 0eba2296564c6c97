// The entry to the QML module Fenwhirl.Views: the windows and the objects that feed them.
//
// The module is linked statically and has no plugin: whoever creates a QML engine calls registerViews() once
// before, and adds "qrc:/qt/qml" to the engine's import paths. Main thread.

#pragma once

#include <QUrl>

// Makes `import Fenwhirl.Views` and what it rests on work. May be called more than once.
void registerViews();

// The files of the main window and the status item's panel; each wants its initial property `models`, a
// ViewModels.
[[nodiscard]] QUrl mainWindowFile();
[[nodiscard]] QUrl menuPanelFile();
// A question before all other windows; wants `heading`, `message`, `acceptText` and `laterText`, and emits
// `accepted`.
[[nodiscard]] QUrl alertWindowFile();
