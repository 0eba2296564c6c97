#pragma once

#include <QFont>

// The entry point of the QML module Fenwhirl.Components: the visual vocabulary of the interface, which
// depends on no model.
//
// The module is linked statically and has no plugin. A static object starts its type registration, and a
// linker drops that object from a static library when nothing refers to it. Call registerComponents() once
// before creating a QML engine, and add "qrc:/qt/qml" to the engine's import paths. Main thread.

namespace Fenwhirl {

// Makes `import Fenwhirl.Components` work. May be called more than once.
void registerComponents();

// The base font of all texts of the interface, for QGuiApplication::setFont: `family` if it is installed,
// otherwise the desktop's font; an empty family selects the desktop's font, too. It uses no hinting and
// greyscale antialiasing, so that texts keep their measured widths at every scale and show no coloured
// fringes.
[[nodiscard]] QFont interfaceFont(const QString& family);

} // namespace Fenwhirl
