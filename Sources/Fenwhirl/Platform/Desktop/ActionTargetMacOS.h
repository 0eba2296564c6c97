// The target of a menu item's or a button's action. macOS only, private to this folder.

#pragma once

#import <AppKit/AppKit.h>
#include <functional>

// Calls `chosen`; the action is `itemChosen:`. Menu items and buttons refer to their target weakly, so its owner
// keeps it, and clears `chosen` before it goes away, because an action may still be on its way. Main thread only.
@interface FenwhirlActionTarget : NSObject
@property(nonatomic) std::function<void()> chosen;
// Does not look at the current event, which differs between versions of macOS; the call itself is enough.
- (void)itemChosen:(id)sender;
@end
