// A fake of the part of AppKit that our sources call: the application, its appearance and announcements.

#import "Frameworks/Fakes.h"

const NSAppearanceName NSAppearanceNameAqua = @"NSAppearanceNameAqua";
const NSAppearanceName NSAppearanceNameDarkAqua = @"NSAppearanceNameDarkAqua";
const NSNotificationName NSApplicationDidFinishLaunchingNotification =
    @"NSApplicationDidFinishLaunchingNotification";

@implementation NSAppearance

+ (NSAppearance*)appearanceNamed:(NSAppearanceName)name {
    if (![name isEqualToString:NSAppearanceNameAqua] && ![name isEqualToString:NSAppearanceNameDarkAqua]) {
        return nil;
    }
    NSAppearance* made = [[NSAppearance alloc] init];
    made.name = name;
    return made;
}

- (NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray<NSAppearanceName>*)names {
    for (NSAppearanceName name in names) {
        if ([name isEqualToString:self.name]) {
            return name;
        }
    }
    return nil;
}

@end

const NSAccessibilityNotificationName NSAccessibilityAnnouncementRequestedNotification =
    @"NSAccessibilityAnnouncementRequestedNotification";
const NSAccessibilityNotificationUserInfoKey NSAccessibilityAnnouncementKey =
    @"NSAccessibilityAnnouncementKey";
const NSAccessibilityNotificationUserInfoKey NSAccessibilityPriorityKey = @"NSAccessibilityPriorityKey";

void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* userInfo) {
    FakeMac::requireMainThread("NSAccessibilityPostNotificationWithUserInfo");
    if (element == nil || ![notification isEqualToString:NSAccessibilityAnnouncementRequestedNotification]) {
        FakeMac::violate("an announcement of nothing, or of another kind");
    }
    NSString* text = userInfo[NSAccessibilityAnnouncementKey];
    NSNumber* priority = userInfo[NSAccessibilityPriorityKey];
    FakeMac::note("announce \"" + QString::fromNSString(text).toStdString() + "\" at " +
                  std::to_string(static_cast<int>(priority.value)));
}

// The application
__kindof NSApplication* NSApp = nil;
static const FakeMac::AtEnd atEnd([] { NSApp = nil; });

@implementation NSApplication {
    NSApplicationActivationPolicy policy_;
    NSAppearance* appearance_;
    NSMenu* mainMenu_;
}

+ (NSApplication*)sharedApplication {
    FakeMac::requireMainThread("+[NSApplication sharedApplication]");
    if (NSApp == nil) {
        NSApp = [[NSApplication alloc] init];
        [NSApp setActivationPolicy:NSApplicationActivationPolicyProhibited];
        FakeMac::journal().clear();
    }
    return NSApp;
}

- (NSArray<NSWindow*>*)windows {
    return @[];
}

- (BOOL)isActive {
    return FakeMac::settings().isActive;
}

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
    FakeMac::requireMainThread("-[NSApplication setActivationPolicy:]");
    if (!FakeMac::settings().changesPolicy) {
        return NO;
    }
    FakeMac::note("policy " + std::to_string(policy));
    policy_ = policy;
    return YES;
}

- (NSApplicationActivationPolicy)activationPolicy {
    return policy_;
}

- (void)activate {
    FakeMac::did("-[NSApplication activate]");
}

- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps {
    FakeMac::did(ignoreOtherApps ? "-[NSApplication activateIgnoringOtherApps:YES]"
                                 : "-[NSApplication activateIgnoringOtherApps:NO]");
}

- (void)terminate:(id)sender {
    (void)sender;
    FakeMac::did("-[NSApplication terminate:]");
}

- (void)hide:(id)sender {
    (void)sender;
    FakeMac::did("-[NSApplication hide:]");
}

- (void)hideOtherApplications:(id)sender {
    (void)sender;
    FakeMac::did("-[NSApplication hideOtherApplications:]");
}

- (void)unhideAllApplications:(id)sender {
    (void)sender;
    FakeMac::did("-[NSApplication unhideAllApplications:]");
}

- (void)arrangeInFront:(id)sender {
    (void)sender;
    FakeMac::did("-[NSApplication arrangeInFront:]");
}

- (void)orderFrontStandardAboutPanel:(id)sender {
    (void)sender;
    FakeMac::did("-[NSApplication orderFrontStandardAboutPanel:]");
}

- (void)replyToApplicationShouldTerminate:(BOOL)shouldTerminate {
    FakeMac::did(shouldTerminate ? "replied YES" : "replied NO");
}

- (NSAppearance*)appearance {
    return appearance_;
}

- (void)setAppearance:(NSAppearance*)appearance {
    FakeMac::requireMainThread("-[NSApplication setAppearance:]");
    appearance_ = appearance;
    FakeMac::changeValue(self, @"effectiveAppearance");
}

- (NSAppearance*)effectiveAppearance {
    if (appearance_ != nil) {
        return appearance_;
    }
    NSAppearance* made = [[NSAppearance alloc] init];
    made.name = makeText(FakeMac::settings().systemAppearance);
    return made;
}

@end
