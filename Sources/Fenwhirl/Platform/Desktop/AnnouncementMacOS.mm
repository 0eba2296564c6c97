#include "Fenwhirl/Platform/Desktop/Announcement.h"

#import <AppKit/AppKit.h>

bool announceBySystem(const QString& text, bool urgent) {
    @autoreleasepool {
        const NSAccessibilityPriorityLevel priority =
            urgent ? NSAccessibilityPriorityHigh : NSAccessibilityPriorityMedium;
        // Whoever is in another program hears nothing of it.
        NSWindow* window = NSApp.keyWindow;
        if (window == nil)
            return true;
        NSAccessibilityPostNotificationWithUserInfo(
            window, NSAccessibilityAnnouncementRequestedNotification, @{
                NSAccessibilityAnnouncementKey : text.toNSString(),
                NSAccessibilityPriorityKey : @(priority),
            });
        return true;
    }
}
