// The system's window behind a window of Qt's. macOS only; used only between the sources of this folder.

#pragma once

#include <QWindow>

#import <AppKit/AppKit.h>

namespace Fenwhirl {

// Creates the system's window if there is none yet. Main thread only; the system's window lives as long as Qt's.
[[nodiscard]] inline NSWindow* nativeWindow(QWindow& window) {
    NSView* view = (__bridge NSView*)reinterpret_cast<void*>(window.winId());
    return view.window;
}

} // namespace Fenwhirl
