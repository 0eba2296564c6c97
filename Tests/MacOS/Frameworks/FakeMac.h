// The Mac that the macOS sources meet in tests: what it is told it keeps and writes into a journal, what it
// is asked it answers as documented or as a test has arranged. Nothing of it draws, blocks or reaches the
// network.
//
// What no program may do on a Mac is a violation: AppKit off the main thread, an observer taken away that was
// never there, an activity ended twice. Each test ends with checkEnd(), which also wants everything given
// back.
//
// Threads: main thread, but for what says otherwise.

#pragma once

#include <QString>

#import <AppKit/AppKit.h>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace FakeMac {

// Calls that matter for their order, as "-[NSWindow close]".
std::vector<std::string>& journal();
void note(const std::string& call); // any thread

void violate(const std::string& what); // any thread
std::vector<std::string> takeViolations();

// That the calling thread is the one in which the tests began.
void wantMainThread(const char* call);
bool isMainThread();

// Everything as at the start of a process. What a test left behind is a violation first.
void checkEnd();

// 13.0 unless a test says otherwise.
void setSystemVersion(int major);

// What the next objects of a test are told.
struct Settings {
    bool hasStatusButton = true;
    std::vector<QString> symbols = {QStringLiteral("fan")};
    bool isActive = false;
    bool makesBitmaps = true;
    bool makesContexts = true;
    bool makesIcons = true;
    bool makesMonitors = true; // of events
    bool reducesMotion = false;
    QString systemAppearance = QStringLiteral("NSAppearanceNameAqua");
    QString savePath;                        // empty: cancelled
    std::map<std::int32_t, QString> running; // process, what it was asked to do
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
        quitReasons; // {0 as a type, 1 as an enumeration; as a parameter}
    bool hasAppleEvent = false;
};

Settings& settings();

// Notifications of the default centre (nil) or of the workspace.
std::size_t observers();
void post(NSNotificationCenter* center, NSString* name, NSDictionary* userInfo = nil);
// Another program, or this one, becomes the active one.
void activateApplication(pid_t process);
// What changed, for whoever observes it.
void changeValue(id object, NSString* path);
std::size_t valueObservers();

// A press that the system reports: in another program, or in a window of ours.
void pressElsewhere(NSEventMask mask = NSEventMaskLeftMouseDown);
// Null when a monitor kept the event from going on.
bool pressIn(NSWindow* window, NSEventMask mask = NSEventMaskLeftMouseDown);
std::size_t eventMonitors();

// The items in the menu bar, and the activities that run.
std::vector<NSStatusItem*> statusItems();
std::vector<QString> activities();

// Where pictures are drawn at the moment, and the windows that status items are in.
NSBitmapImageRep* drawnInto();
CGFloat& lastWeight(); // of the symbol that was asked for last
std::vector<NSWindow*>& windowsOfItems();

// Calls an action as the event loop does, in a pool of its own.
void sendAction(SEL action, id target, id sender);

} // namespace FakeMac

// What the fakes keep beside what the headers declare.
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
