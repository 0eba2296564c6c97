// A fake of the part of AppKit that our sources call.

#import "Frameworks/FakeMac.h"

#include <QString>

#include <algorithm>
#include <utility>

// An action returns nothing, so performSelector: cannot leak a result.
#pragma clang diagnostic ignored "-Warc-performSelector-leaks"

NSString* makeText(const QString& text);

const NSFontWeight NSFontWeightRegular = 0;
const NSFontWeight NSFontWeightBold = 0.4;
const NSColorSpaceName NSDeviceRGBColorSpace = @"NSDeviceRGBColorSpace";
const NSAppearanceName NSAppearanceNameAqua = @"NSAppearanceNameAqua";
const NSAppearanceName NSAppearanceNameDarkAqua = @"NSAppearanceNameDarkAqua";
const NSNotificationName NSApplicationDidFinishLaunchingNotification =
    @"NSApplicationDidFinishLaunchingNotification";
const NSNotificationName NSWindowDidBecomeKeyNotification = @"NSWindowDidBecomeKeyNotification";
const NSNotificationName NSWindowWillCloseNotification = @"NSWindowWillCloseNotification";
const NSNotificationName NSWorkspaceDidActivateApplicationNotification =
    @"NSWorkspaceDidActivateApplicationNotification";
NSString* const NSWorkspaceApplicationKey = @"NSWorkspaceApplicationKey";
const NSNotificationName NSWorkspaceDidWakeNotification = @"NSWorkspaceDidWakeNotification";
const NSNotificationName NSWorkspaceSessionDidBecomeActiveNotification =
    @"NSWorkspaceSessionDidBecomeActiveNotification";
const NSNotificationName NSWorkspaceSessionDidResignActiveNotification =
    @"NSWorkspaceSessionDidResignActiveNotification";
const NSNotificationName NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification =
    @"NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification";

@implementation NSFont

+ (NSFont*)menuBarFontOfSize:(CGFloat)size {
    NSFont* made = [[NSFont alloc] init];
    made.pointSize = size > 0 ? size : 14; // the default size
    return made;
}

+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
    NSFont* made = [[NSFont alloc] init];
    made.pointSize = size;
    made.weight = weight;
    made.hasFixedDigits = YES;
    return made;
}

@end

// Events and event monitors
@interface NSEvent ()
@property(nullable, readwrite, assign) NSWindow* window;
@end

@interface FakeMonitor : NSObject
@property NSEventMask mask;
@property(copy) void (^global)(NSEvent*);
@property(copy) NSEvent* (^local)(NSEvent*);
@end

@implementation FakeMonitor
@end

static std::vector<FakeMonitor*>& monitors() {
    static auto* instance = new std::vector<FakeMonitor*>;
    return *instance;
}

@implementation NSEvent

static FakeMonitor* addMonitor(NSEventMask mask) {
    FakeMac::requireMainThread("a monitor of events");
    if (!FakeMac::settings().makesMonitors) {
        return nil;
    }
    FakeMonitor* monitor = [[FakeMonitor alloc] init];
    monitor.mask = mask;
    monitors().push_back(monitor);
    return monitor;
}

+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block {
    FakeMonitor* monitor = addMonitor(mask);
    monitor.global = block;
    return monitor;
}

+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* (^)(NSEvent*))block {
    FakeMonitor* monitor = addMonitor(mask);
    monitor.local = block;
    return monitor;
}

+ (void)removeMonitor:(id)monitor {
    auto& all = monitors();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] == monitor) {
            all.erase(all.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
    FakeMac::violate("a monitor of events was removed that is not there");
}

@end

void FakeMac::pressElsewhere(NSEventMask mask) {
    @autoreleasepool {
        NSEvent* event = [[NSEvent alloc] init];
        const std::vector<FakeMonitor*> told = monitors();
        for (FakeMonitor* monitor : told) {
            if (monitor.global != nil && (monitor.mask & mask) != 0) {
                monitor.global(event);
            }
        }
    }
}

bool FakeMac::pressIn(NSWindow* window, NSEventMask mask) {
    @autoreleasepool {
        NSEvent* event = [[NSEvent alloc] init];
        event.window = window;
        const std::vector<FakeMonitor*> told = monitors();
        for (FakeMonitor* monitor : told) {
            if (event != nil && monitor.local != nil && (monitor.mask & mask) != 0) {
                event = monitor.local(event);
            }
        }
        return event != nil;
    }
}

std::size_t FakeMac::eventMonitors() {
    return monitors().size();
}

void FakeMac::sendAction(SEL action, id target, id sender) {
    @autoreleasepool {
        [target performSelector:action withObject:sender];
    }
}

// Views, images
@implementation NSResponder
@end

@implementation NSView

- (NSRect)convertRect:(NSRect)rect toView:(NSView*)view {
    (void)view;
    return rect;
}

@end

@implementation NSControl

- (NSInteger)sendActionOn:(NSEventMask)mask {
    const NSInteger before = self.actionMask;
    self.actionMask = static_cast<NSInteger>(mask);
    return before;
}

@end

@implementation NSButton

- (void)highlight:(BOOL)flag {
    FakeMac::requireMainThread("-[NSButton highlight:]");
    self.isHighlighted = flag;
}

@end

@implementation NSImageSymbolConfiguration

+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight {
    NSImageSymbolConfiguration* made = [[NSImageSymbolConfiguration alloc] init];
    made.pointSize = size;
    made.weight = weight;
    FakeMac::lastWeight() = weight;
    return made;
}

@end

CGFloat& FakeMac::lastWeight() {
    static CGFloat weight = 0;
    return weight;
}

@implementation NSImage {
    BOOL isTemplate_;
}

+ (instancetype)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description {
    (void)description;
    const QString wanted = QString::fromNSString(name);
    const auto& known = FakeMac::settings().symbols;
    if (std::find(known.begin(), known.end(), wanted) == known.end()) {
        return nil;
    }
    NSImage* made = [[NSImage alloc] init];
    made.symbolName = name;
    made.size = NSSize{10, 12};
    return made;
}

- (instancetype)initWithData:(NSData*)data {
    if ((self = [super init])) {
        if (data == nil || data.length == 0) {
            return nil;
        }
        self.data = data;
    }
    return self;
}

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
    NSImage* made = [[NSImage alloc] init];
    made.symbolName = self.symbolName;
    made.configuration = configuration;
    made.size = NSSize{configuration.pointSize * 1.25, configuration.pointSize * 1.1};
    return made;
}

- (void)setTemplate:(BOOL)isTemplate {
    isTemplate_ = isTemplate;
}

- (BOOL)isTemplate {
    return isTemplate_;
}

// Draws a test pattern: red is 10, green is the column, and blue is the row of each pixel.
- (void)drawInRect:(NSRect)rect {
    FakeMac::note("-[NSImage drawInRect:] " + std::to_string(rect.size.width) + " x " +
                  std::to_string(rect.size.height));
    NSBitmapImageRep* bitmap = FakeMac::currentBitmap();
    if (bitmap == nil) {
        FakeMac::violate("a picture was drawn without a context");
        return;
    }
    for (NSInteger y = 0; y < static_cast<NSInteger>(rect.size.height); ++y) {
        for (NSInteger x = 0; x < static_cast<NSInteger>(rect.size.width); ++x) {
            unsigned char* pixel = bitmap.bitmapData + y * bitmap.bytesPerRow + 4 * x;
            pixel[0] = 10;
            pixel[1] = static_cast<unsigned char>(x);
            pixel[2] = static_cast<unsigned char>(y);
            pixel[3] = 255;
        }
    }
}

@end

@implementation NSImageRep
@end

@implementation NSBitmapImageRep {
    std::vector<unsigned char> bytes_;
    NSInteger bytesPerRow_;
}

- (instancetype)initWithBitmapDataPlanes:(unsigned char**)planes
                              pixelsWide:(NSInteger)width
                              pixelsHigh:(NSInteger)height
                           bitsPerSample:(NSInteger)bitsPerSample
                         samplesPerPixel:(NSInteger)samplesPerPixel
                                hasAlpha:(BOOL)hasAlpha
                                isPlanar:(BOOL)isPlanar
                          colorSpaceName:(NSColorSpaceName)colorSpaceName
                             bytesPerRow:(NSInteger)bytesPerRow
                            bitsPerPixel:(NSInteger)bitsPerPixel {
    if ((self = [super init])) {
        if (!FakeMac::settings().makesBitmaps || width <= 0 || height <= 0) {
            return nil;
        }
        if (planes != nullptr || bitsPerSample != 8 || samplesPerPixel != 4 || !hasAlpha || isPlanar ||
            bytesPerRow != 0 || bitsPerPixel != 0 ||
            ![colorSpaceName isEqualToString:NSDeviceRGBColorSpace]) {
            FakeMac::violate("a bitmap of another kind than eight bits each of red, green, blue and opacity");
        }
        bytesPerRow_ = (4 * width + 63) / 64 * 64; // rows are padded to an alignment, as on macOS
        bytes_.resize(static_cast<std::size_t>(bytesPerRow_ * height));
    }
    return self;
}

- (unsigned char*)bitmapData {
    return bytes_.data();
}

- (NSInteger)bytesPerRow {
    return bytesPerRow_;
}

@end

@interface NSGraphicsContext ()
@property(strong) NSBitmapImageRep* bitmap;
@end

static NSGraphicsContext* theContext = nil;

static std::vector<NSGraphicsContext*>& savedContexts() {
    static auto* instance = new std::vector<NSGraphicsContext*>;
    return *instance;
}

@implementation NSGraphicsContext

+ (NSGraphicsContext*)currentContext {
    return theContext;
}

+ (void)setCurrentContext:(NSGraphicsContext*)context {
    theContext = context;
}

+ (NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmap {
    if (!FakeMac::settings().makesContexts) {
        return nil;
    }
    NSGraphicsContext* made = [[NSGraphicsContext alloc] init];
    made.bitmap = bitmap;
    return made;
}

+ (void)saveGraphicsState {
    savedContexts().push_back(theContext);
}

+ (void)restoreGraphicsState {
    if (savedContexts().empty()) {
        FakeMac::violate("a graphics state was restored that was never saved");
        return;
    }
    theContext = savedContexts().back();
    savedContexts().pop_back();
}

- (void)flushGraphics {
    FakeMac::note("-[NSGraphicsContext flushGraphics]");
}

@end

NSBitmapImageRep* FakeMac::currentBitmap() {
    return theContext.bitmap;
}

// Menus
@interface NSMenuItem ()
@property(readwrite, getter=isSeparatorItem) BOOL separatorItem;
@end

@implementation NSMenuItem

- (instancetype)initWithTitle:(NSString*)title action:(SEL)action keyEquivalent:(NSString*)key {
    if ((self = [super init])) {
        if (title == nil || key == nil) {
            FakeMac::violate("a menu item without title or key"); // macOS raises an exception
        }
        self.title = title;
        self.action = action;
        self.keyEquivalent = key;
        self.keyEquivalentModifierMask = NSEventModifierFlagCommand;
    }
    return self;
}

+ (NSMenuItem*)separatorItem {
    NSMenuItem* made = [[NSMenuItem alloc] init];
    made.separatorItem = YES;
    return made;
}

@end

@implementation NSMenu {
    std::vector<NSMenuItem*> items_;
}

- (instancetype)initWithTitle:(NSString*)title {
    if ((self = [super init])) {
        self.title = title;
    }
    return self;
}

- (NSArray<NSMenuItem*>*)itemArray {
    return [NSArray arrayWithObjects:items_.data() count:items_.size()];
}

- (void)addItem:(NSMenuItem*)item {
    FakeMac::requireMainThread("-[NSMenu addItem:]");
    items_.push_back(item);
}

@end

// The menu bar
@implementation NSStatusBarButton
@end

@implementation NSStatusItem
@end

static NSStatusBar* theStatusBar = nil;

static std::vector<NSStatusItem*>& items() {
    static auto* instance = new std::vector<NSStatusItem*>;
    return *instance;
}

@implementation NSStatusBar

+ (NSStatusBar*)systemStatusBar {
    if (theStatusBar == nil) {
        theStatusBar = [[NSStatusBar alloc] init];
    }
    return theStatusBar;
}

- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
    FakeMac::requireMainThread("-[NSStatusBar statusItemWithLength:]");
    NSStatusItem* item = [[NSStatusItem alloc] init];
    item.length = length;
    item.visible = YES;
    if (FakeMac::settings().hasStatusButton) {
        item.button = [[NSStatusBarButton alloc] init];
        item.button.title = @"";
        NSWindow* window = [[NSWindow alloc] init];
        window.frame = NSRect{{1000, 876}, {60, 24}};
        window.visible = YES;
        window.occlusionState = NSWindowOcclusionStateVisible;
        item.button.window = window;
        FakeMac::statusItemWindows().push_back(window);
    }
    items().push_back(item);
    return item;
}

- (void)removeStatusItem:(NSStatusItem*)item {
    FakeMac::requireMainThread("-[NSStatusBar removeStatusItem:]");
    auto& all = items();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] == item) {
            all.erase(all.begin() + static_cast<std::ptrdiff_t>(i));
            FakeMac::note("-[NSStatusBar removeStatusItem:]");
            return;
        }
    }
    FakeMac::violate("a status item was removed that is not there");
}

@end

std::vector<NSWindow*>& FakeMac::statusItemWindows() {
    static auto* instance = new std::vector<NSWindow*>;
    return *instance;
}

std::vector<NSStatusItem*> FakeMac::statusItems() {
    return items();
}

// Windows and screens
@implementation NSWindow {
    NSWindowStyleMask styleMask_;
}

static void did(const char* what) {
    FakeMac::requireMainThread(what);
    FakeMac::note(what);
}

- (NSWindowStyleMask)styleMask {
    return styleMask_;
}

- (void)setStyleMask:(NSWindowStyleMask)mask {
    FakeMac::requireMainThread("-[NSWindow setStyleMask:]");
    styleMask_ = mask;
}

- (NSRect)convertRectToScreen:(NSRect)rect {
    return NSRect{{rect.origin.x + self.frame.origin.x, rect.origin.y + self.frame.origin.y}, rect.size};
}

- (void)makeKeyWindow {
    did("-[NSWindow makeKeyWindow]");
}

- (void)makeKeyAndOrderFront:(id)sender {
    (void)sender;
    did("-[NSWindow makeKeyAndOrderFront:]");
}

- (void)orderOut:(id)sender {
    (void)sender;
    did("-[NSWindow orderOut:]");
}

- (void)deminiaturize:(id)sender {
    (void)sender;
    did("-[NSWindow deminiaturize:]");
    self.miniaturized = NO;
}

- (void)invalidateShadow {
    did("-[NSWindow invalidateShadow]");
}

- (void)performClose:(id)sender {
    (void)sender;
    did("-[NSWindow performClose:]");
}

- (void)performMiniaturize:(id)sender {
    (void)sender;
    did("-[NSWindow performMiniaturize:]");
}

- (void)performZoom:(id)sender {
    (void)sender;
    did("-[NSWindow performZoom:]");
}

- (void)close {
    did("-[NSWindow close]");
}

@end

@implementation NSPanel
@end

@interface NSScreen ()
@property(readwrite) NSRect frame;
@property(readwrite) NSRect visibleFrame;
@end

@implementation NSScreen

+ (NSArray<NSScreen*>*)screens {
    std::vector<NSScreen*> all;
    for (const NSRect& frame : FakeMac::settings().screens) {
        NSScreen* screen = [[NSScreen alloc] init];
        screen.frame = frame;
        screen.visibleFrame = frame;
        all.push_back(screen);
    }
    return [NSArray arrayWithObjects:all.data() count:all.size()];
}

@end

// Appearance
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

// Panels
@interface NSSavePanel ()
@property(nullable, readwrite, copy) NSURL* URL;
@end

@implementation NSSavePanel

+ (NSSavePanel*)savePanel {
    return [[NSSavePanel alloc] init];
}

- (NSModalResponse)runModal {
    did("-[NSSavePanel runModal]");
    FakeMac::note("proposed " + QString::fromNSString(self.nameFieldStringValue).toStdString());
    const QString path = FakeMac::settings().savePath;
    if (path.isEmpty()) {
        // A cancelled panel has a URL nevertheless, which the program must not use.
        self.URL = [NSURL fileURLWithPath:@"/Users/test/declined.txt"];
        return NSModalResponseCancel;
    }
    self.URL = [NSURL fileURLWithPath:makeText(path)];
    return NSModalResponseOK;
}

@end

// Announcements by a screen reader
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
    FakeMac::note("policy " + std::to_string(policy));
    policy_ = policy;
    return YES;
}

- (NSApplicationActivationPolicy)activationPolicy {
    return policy_;
}

- (void)activate {
    did("-[NSApplication activate]");
}

- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps {
    did(ignoreOtherApps ? "-[NSApplication activateIgnoringOtherApps:YES]"
                        : "-[NSApplication activateIgnoringOtherApps:NO]");
}

- (void)terminate:(id)sender {
    (void)sender;
    did("-[NSApplication terminate:]");
}

- (void)hide:(id)sender {
    (void)sender;
    did("-[NSApplication hide:]");
}

- (void)hideOtherApplications:(id)sender {
    (void)sender;
    did("-[NSApplication hideOtherApplications:]");
}

- (void)unhideAllApplications:(id)sender {
    (void)sender;
    did("-[NSApplication unhideAllApplications:]");
}

- (void)arrangeInFront:(id)sender {
    (void)sender;
    did("-[NSApplication arrangeInFront:]");
}

- (void)orderFrontStandardAboutPanel:(id)sender {
    (void)sender;
    did("-[NSApplication orderFrontStandardAboutPanel:]");
}

- (void)replyToApplicationShouldTerminate:(BOOL)shouldTerminate {
    did(shouldTerminate ? "replied YES" : "replied NO");
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

// Other applications
@interface NSRunningApplication ()
@property(readwrite) pid_t processIdentifier;
@end

@implementation NSRunningApplication

+ (instancetype)runningApplicationWithProcessIdentifier:(pid_t)processIdentifier {
    const auto& running = FakeMac::settings().running;
    if (running.find(processIdentifier) == running.end()) {
        return nil;
    }
    NSRunningApplication* made = [[NSRunningApplication alloc] init];
    made.processIdentifier = processIdentifier;
    return made;
}

- (BOOL)terminate {
    FakeMac::settings().running[self.processIdentifier] += QStringLiteral("terminate ");
    return YES;
}

- (BOOL)forceTerminate {
    FakeMac::settings().running[self.processIdentifier] += QStringLiteral("forceTerminate ");
    return YES;
}

@end

static NSWorkspace* theWorkspace = nil;

void FakeMac::activateApplication(pid_t process) {
    @autoreleasepool {
        NSRunningApplication* chosen = [[NSRunningApplication alloc] init];
        chosen.processIdentifier = process;
        post(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceDidActivateApplicationNotification,
             @{NSWorkspaceApplicationKey : chosen});
    }
}

@implementation NSWorkspace {
    NSNotificationCenter* center_;
}

+ (NSWorkspace*)sharedWorkspace {
    if (theWorkspace == nil) {
        theWorkspace = [[NSWorkspace alloc] init];
        theWorkspace->center_ = [[NSNotificationCenter alloc] init];
    }
    return theWorkspace;
}

- (NSNotificationCenter*)notificationCenter {
    return center_;
}

- (NSImage*)iconForFile:(NSString*)path {
    FakeMac::note("icon of " + QString::fromNSString(path).toStdString());
    if (!FakeMac::settings().makesIcons) {
        return nil;
    }
    NSImage* made = [[NSImage alloc] init];
    made.size = NSSize{32, 32};
    return made;
}

- (BOOL)accessibilityDisplayShouldReduceMotion {
    return FakeMac::settings().reducesMotion;
}

- (BOOL)openURL:(NSURL*)url {
    FakeMac::note("open " + QString::fromNSString(url.path).toStdString());
    return YES;
}

- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)urls {
    std::string all = "show";
    for (NSURL* url in urls) {
        all += " " + QString::fromNSString(url.path).toStdString();
    }
    did(all.c_str());
}

@end

void forgetAppKit();
void forgetViews(); // MacQt.mm

void forgetAppKit() {
    if (!monitors().empty()) {
        FakeMac::violate("monitors of events were left behind");
    }
    if (!items().empty()) {
        FakeMac::violate("status items were left behind");
    }
    if (!savedContexts().empty() || theContext != nil) {
        FakeMac::violate("a graphics state was left behind");
    }
    monitors().clear();
    items().clear();
    FakeMac::statusItemWindows().clear();
    savedContexts().clear();
    theContext = nil;
    theStatusBar = nil;
    theWorkspace = nil;
    NSApp = nil;
    forgetViews();
}
