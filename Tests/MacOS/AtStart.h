// Records the state at the moment when Qt's application object was created. A process does that only once,
// before its event loop runs, so Main.mm records it and the tests read it here.

#pragma once

#import <AppKit/AppKit.h>

namespace Fenwhirl::AtStart {

// The delegate that the program installed.
id<NSApplicationDelegate> delegate();

// Whether the delegate was installed, and the environment variables were set, while Qt created the
// application object.
bool hadDelegate();
bool hadEnvironment();

// Whether an object was autoreleased without an open pool, so that it would never be released.
bool autoreleasedWithoutPool();

} // namespace Fenwhirl::AtStart
