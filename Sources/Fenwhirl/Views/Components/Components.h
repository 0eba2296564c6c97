#pragma once

#include <QFont>

// The entry to the QML module Fenwhirl.Components: the visual vocabulary of the interface, which knows no
// model.
//
// The module is linked statically and has no plugin. Its type registration is started by a static object that
// a linker drops from a static library when nothing refers to it: whoever creates a QML engine calls
// registerComponents() once before, and adds "qrc:/qt/qml" to the engine's import paths. Main thread.

namespace Fenwhirl {

// Makes `import Fenwhirl.Components` work. May be called more than once.
void registerComponents();

// The font every text of the interface starts from, for QGuiApplication::setFont: `family` when it is
// installed, else the desktop's own. Without hinting and with grey antialiasing, so that texts keep their
// measured widths at every scale and show no coloured fringes. An empty family asks for the desktop's own.
[[nodiscard]] QFont interfaceFont(const QString& family);

} // namespace Fenwhirl
