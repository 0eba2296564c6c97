// The native windows of Qt's. Main thread only.

#pragma once

#import <AppKit/AppKit.h>

class QWindow;

namespace FakeMac {

// Made at the first question, as there.
NSWindow* nativeWindow(QWindow& window);

// As when a window was closed: the next question makes another one.
void destroyNative(QWindow& window);

} // namespace FakeMac
