// The icon of another application, by its path.
//
// On macOS the icon that the workspace gives for the path. On Linux the icon theme, by its desktop entry, or
// the one of the application's name. Null when nothing is found: the caller shows a generic symbol.
//
// Threads: main thread only.

#pragma once

#include <QImage>
#include <QString>

// Square, `pixels` wide.
[[nodiscard]] QImage applicationIcon(const QString& applicationPath, int pixels);
