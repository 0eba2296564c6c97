// The native windows of Qt's windows. Main thread only.

#pragma once

#import <AppKit/AppKit.h>

class QWindow;

namespace FakeMac {

// Created by the first call, as on macOS.
NSWindow* nativeWindow(QWindow& window);

// Destroys the native window, as closing a window does. The next call of nativeWindow() creates another one.
void destroyNative(QWindow& window);

} // namespace FakeMac
