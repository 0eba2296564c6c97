#include "Fenwhirl/Platform/Desktop/Announcement.h"

#import <AppKit/AppKit.h>

namespace Fenwhirl {

bool announceBySystem(const QString& text, bool urgent) {
    @autoreleasepool {
        const NSAccessibilityPriorityLevel priority =
            urgent ? NSAccessibilityPriorityHigh : NSAccessibilityPriorityMedium;
        // If there is no key window, the user is in another program and should hear nothing.
        NSWindow* window = NSApp.keyWindow;
        if (window == nil) {
            return true;
        }
        NSAccessibilityPostNotificationWithUserInfo(
            window, NSAccessibilityAnnouncementRequestedNotification, @{
                NSAccessibilityAnnouncementKey : text.toNSString(),
                NSAccessibilityPriorityKey : @(priority),
            });
        return true;
    }
}

} // namespace Fenwhirl
