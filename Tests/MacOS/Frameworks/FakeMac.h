// The fake Mac on which the tests run the macOS sources. It stores what it is told, records the calls in a
// journal, and answers queries as documented by Apple or as a test has arranged. It does not draw, block or
// use the network.
//
// Whatever a program must not do on a Mac is recorded as a violation: AppKit calls off the main thread,
// removing an observer that was never added, ending an activity twice. Each test ends with checkEnd(), which
// also reports whatever was not released or removed.
//
// Threads: main thread, unless noted otherwise.

#pragma once

#include <QString>

#import <AppKit/AppKit.h>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace FakeMac {

// The recorded calls whose order matters, such as "-[NSWindow close]".
std::vector<std::string>& journal();
void note(const std::string& call); // any thread

void violate(const std::string& what); // any thread
std::vector<std::string> takeViolations();

// Records a violation when `call` is not made on the thread that the tests started on.
void requireMainThread(const char* call);
bool isMainThread();

// Records a violation for whatever a test has left behind, then resets everything to the state at process
// start.
void checkEnd();

// 13.0 unless a test says otherwise.
void setSystemVersion(int major);

// What the fake answers. Tests change it, and checkEnd() resets it.
struct Settings {
    bool hasStatusButton = true;
    std::vector<QString> symbols = {QStringLiteral("fan")};
    bool isActive = false;
    bool makesBitmaps = true;
    bool makesContexts = true;
    bool makesIcons = true;
    bool makesMonitors = true; // of events
    bool makesCommandQueues = true;
    std::vector<bool> graphicsDevices = {false}; // whether it is the one that takes little power
    bool reducesMotion = false;
    bool changesPolicy = true;                        // when asked to
    QString metalDevice = QStringLiteral("Apple M2"); // empty: there is none
    QString systemAppearance = QStringLiteral("NSAppearanceNameAqua");
    QString savePath;                  // empty: cancelled
    std::function<void()> whileAsking; // called while the save panel is open
    // Called while a menu is open at a point of the screen.
    std::function<void(NSMenu*, NSPoint)> whileMenuIsOpen;
    std::map<std::int32_t, QString> running; // process → what it was asked to do
    std::vector<NSRect> screens = {NSRect{{0, 0}, {1440, 900}}};
    QString computerName = QStringLiteral("Mac de test");
    bool hasComputerName = true;
    std::map<QString, QString> bundle = {
        {QStringLiteral("CFBundleName"), QStringLiteral("Fenwhirl")},
        {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("0.1")}};
    QString bundlePath = QStringLiteral("/Applications/Fenwhirl.app");
    bool hasSession = true;
    bool hasConsoleKey = true;
    bool consoleIsNumber = true;
    bool isOnConsole = true;
    std::vector<QString> languages = {QStringLiteral("fr-FR"), QStringLiteral("en-US")};
    bool hasLanguages = true;
    std::map<std::pair<int, bool>, std::uint32_t>
        quitReasons; // {0: given as a type, 1: as an enumeration; whether given as a parameter}
    bool hasAppleEvent = false;
};

Settings& settings();

// Registered observers, and posting to the default notification centre (nil) or the workspace's.
std::size_t observers();
void post(NSNotificationCenter* center, NSString* name, NSDictionary* userInfo = nil);
// Makes another program, or this one, the active one.
void activateApplication(pid_t process);
// Tells the key-value observers of `object` that the value at `path` has changed.
void changeValue(id object, NSString* path);
std::size_t valueObservers();

// Delivers a mouse press to the event monitors: one in another program, or one in a window of ours.
void pressElsewhere(NSEventMask mask = NSEventMaskLeftMouseDown);
// False when a monitor swallowed the event.
bool pressIn(NSWindow* window, NSEventMask mask = NSEventMaskLeftMouseDown,
             NSEventModifierFlags modifiers = 0);
std::size_t eventMonitors();

// The status items in the menu bar, and the activities that are running.
std::vector<NSStatusItem*> statusItems();
std::vector<QString> activities();

// The bitmap of the current graphics context, and the windows that contain the status items.
NSBitmapImageRep* currentBitmap();
CGFloat& lastWeight(); // of the symbol configuration that was made last
std::vector<NSWindow*>& statusItemWindows();

// Calls an action as the event loop does, in its own autorelease pool.
void sendAction(SEL action, id target, id sender);

} // namespace FakeMac

// Properties that the fakes have in addition to the declared ones.
@interface NSNumber ()
@property double value;
@property BOOL isBoolean;
@end

@interface NSView ()
@property(nullable, readwrite, assign) NSWindow* window;
@end

@interface NSApplication ()
@property(nullable, readwrite, weak) NSWindow* keyWindow;
@end

@interface NSControl ()
@property NSInteger actionMask;
@end

@interface NSButton ()
@property BOOL isHighlighted;
@end

@interface NSStatusItem ()
@property(nullable, readwrite, strong) NSStatusBarButton* button;
@end

@interface NSWindow ()
@property(readwrite) NSRect frame;
@property(nullable, readwrite, strong) NSScreen* screen;
@property(readwrite, getter=isVisible) BOOL visible;
@property(readwrite, getter=isMiniaturized) BOOL miniaturized;
@property(readwrite) NSWindowOcclusionState occlusionState;
@end

@interface NSImage ()
@property(copy) NSString* symbolName;
@property(strong) NSData* data;
@property(strong) NSImageSymbolConfiguration* configuration;
@end

@interface NSImageSymbolConfiguration ()
@property CGFloat pointSize;
@property NSFontWeight weight;
@end

@interface NSFont ()
@property(readwrite) CGFloat pointSize;
@property NSFontWeight weight;
@property BOOL hasFixedDigits;
@end

@interface NSAppearance ()
@property(copy) NSString* name;
@end
