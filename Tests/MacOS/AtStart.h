// What was there when Qt's application object was made, which the program does once, before its event loop.

#pragma once

#import <AppKit/AppKit.h>

namespace AtStart {

// The delegate that the program installed.
id<NSApplicationDelegate> delegate();

// Whether it was there, and the environment set, when Qt looked.
bool hadDelegate();
bool hadEnvironment();

// Whether something was autoreleased, where nothing would ever let it go.
bool leftSomething();

} // namespace AtStart
