// Which graphics processor the windows are drawn with.
//
// macOS: a Mac may have two, and Metal prefers the one that needs more power. The windows are drawn with the other
// one. Linux: does nothing, because the desktop decides.
//
// Threads: main thread only.

#pragma once

class QQuickWindow;

namespace Fenwhirl {

// To be called once for each window, before it is first shown. The window owns what is created for it.
void chooseGraphicsDevice(QQuickWindow& window);

} // namespace Fenwhirl
