// The icon of another application, by its path.
//
// On macOS this is the workspace's icon for the path. On Linux it comes from the icon theme: the icon that
// the application's desktop entry names, or else the one with the application's name. Null when nothing is
// found; the caller then shows a generic symbol.
//
// Threads: main thread only.

#pragma once

#include <QImage>
#include <QString>

namespace Fenwhirl {

// A square image, `pixels` wide.
[[nodiscard]] QImage applicationIcon(const QString& applicationPath, int pixels);

} // namespace Fenwhirl
