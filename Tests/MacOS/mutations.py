#!/usr/bin/env python3
"""Mutation testing of the macOS sources: plants one mistake at a time, and checks whether the tests in this folder notice it.

    Tests/MacOS/mutations.py [WORD…]      after .ci/checks executed; with words, only mistakes whose title or file contains one of them

Each mistake compiles and links. The mutated source is compiled into an object file of its own, and the test program is linked
with that object in front of the library that contains the original, and run. The checkout is not changed. Run it by hand; the
latest result is in Documentation/macOS.md. The exit status is 1 when fewer than 38 mistakes were noticed.
"""

import concurrent.futures
import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "Support"))
import mutation

LEAST = 38

PLATFORM = "Sources/Fenwhirl/Platform/"
DESKTOP = PLATFORM + "Desktop/"
CORE = "Sources/FenwhirlCore/Platform/"

# Title, source file, the original text, the mutated text.
MISTAKES = (
    ("the status item is not removed", DESKTOP + "StatusItemMacOS.mm",
     "[NSStatusBar.systemStatusBar removeStatusItem:item_];", ""),
    ("the symbol is no template", DESKTOP + "StatusItemMacOS.mm", "[image setTemplate:YES];", "[image setTemplate:NO];"),
    ("there is no drawing where the system has no symbol", DESKTOP + "StatusItemMacOS.mm", "if (image == nil) {", "if (false) {"),
    ("the target of the status item is lost", DESKTOP + "StatusItemMacOS.mm", "button.target = target_;",
     "button.target = [[FenwhirlActionTarget alloc] init];"),
    ("a late click reaches the status item that is gone", DESKTOP + "StatusItemMacOS.mm", "target_.chosen = nullptr;", ""),
    ("the place is told from the bottom", DESKTOP + "StatusItemMacOS.mm", "firstScreen.size.height);", "0);"),
    ("the digits are of any width", DESKTOP + "StatusItemMacOS.mm",
     "button.font = [NSFont monospacedDigitSystemFontOfSize:[NSFont menuBarFontOfSize:0].pointSize\n"
     "                                                           weight:NSFontWeightRegular];",
     "button.font = [NSFont menuBarFontOfSize:0];"),
    ("an unseen status item counts as placed", DESKTOP + "StatusItemMacOS.mm",
     "(window.occlusionState & NSWindowOcclusionStateVisible) != 0", "true"),
    ("the status item is marked before the click is over", DESKTOP + "StatusItemMacOS.mm",
     "QTimer::singleShot(0, this, [this] {\n            @autoreleasepool {\n"
     "                [item_.button highlight:open_];\n            }\n        });",
     "[item_.button highlight:open_];"),
    ("the monitor of the status item's presses is left behind", DESKTOP + "StatusItemMacOS.mm",
     "[NSEvent removeMonitor:presses_];", ";"),
    ("a right click anywhere opens the status item's menu", DESKTOP + "StatusItemMacOS.mm",
     "event.window == nil || event.window != item_.button.window", "false"),
    ("the status item's menu keeps no targets", DESKTOP + "StatusItemMacOS.mm", "menuTargets_.push_back(target);", ""),
    ("a late choice reaches the status item that is gone", DESKTOP + "StatusItemMacOS.mm", "            forgetMenuTargets();\n            if",
     "            if"),
    ("the status item's menu leaves an open panel open", DESKTOP + "StatusItemMacOS.mm", "if (open_) {", "if (false) {"),
    ("the status item's menu marks no preset", DESKTOP + "StatusItemMacOS.mm",
     "made.state = entry.isCurrent.value_or(false) ? NSControlStateValueOn : NSControlStateValueOff;", ""),
    ("the observer of the appearance is left behind", DESKTOP + "SystemAppearanceMacOS.mm",
     '[NSApp removeObserver:observer_ forKeyPath:@"effectiveAppearance"];', ""),
    ("the observer of motion is left behind", DESKTOP + "SystemAppearanceMacOS.mm",
     "[NSWorkspace.sharedWorkspace.notificationCenter removeObserver:motion_];", ""),
    ("motion is watched in the wrong centre", DESKTOP + "SystemAppearanceMacOS.mm",
     "motion_ = [NSWorkspace.sharedWorkspace.notificationCenter", "motion_ = [NSNotificationCenter.defaultCenter"),
    ("dark and light are exchanged", DESKTOP + "SystemAppearanceMacOS.mm", "choice == AppearanceChoice::dark ?",
     "choice == AppearanceChoice::light ?"),
    ("the system's own appearance cannot be chosen again", DESKTOP + "SystemAppearanceMacOS.mm",
     "if (choice != AppearanceChoice::system)", "if (true)"),
    ("the delegate is let go at once", DESKTOP + "DesktopApplicationMacOS.mm", "static FenwhirlApplicationDelegate* delegate = nil;",
     "FenwhirlApplicationDelegate* delegate = nil;"),
    ("the delegate comes after Qt's application", DESKTOP + "DesktopApplicationMacOS.mm",
     "    installDelegate();\n    auto application = std::make_unique<QGuiApplication>(argc, argv);",
     "    auto application = std::make_unique<QGuiApplication>(argc, argv);\n    installDelegate();"),
    ("each log-in flashes an icon in the Dock", DESKTOP + "DesktopApplicationMacOS.mm",
     'qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");', ""),
    ("the program ends with its last window", DESKTOP + "DesktopApplicationMacOS.mm",
     "QGuiApplication::setQuitOnLastWindowClosed(false);", ""),
    ("the reason to quit is not looked for among the parameters", DESKTOP + "DesktopApplicationMacOS.mm",
     "[event paramDescriptorForKeyword:kAEQuitReason]", "[event attributeDescriptorForKeyword:kAEQuitReason]"),
    ("the log-out is declined", DESKTOP + "DesktopApplicationMacOS.mm", "? NSTerminateNow",
     "? NSTerminateLater"),
    ("the window loses the style that it has", DESKTOP + "MainWindowBehaviourMacOS.mm",
     "native.styleMask |= NSWindowStyleMaskFullSizeContentView;", "native.styleMask = NSWindowStyleMaskFullSizeContentView;"),
    ("the first window is never freed", DESKTOP + "MainWindowBehaviourMacOS.mm",
     "void configure(QWindow& window) {\n    @autoreleasepool {", "void configure(QWindow& window) {\n    {"),
    ("the application comes forward before its window", DESKTOP + "MainWindowBehaviourMacOS.mm",
     "window.setVisible(true);", "activateApplication(); window.setVisible(true);"),
    ("a minimised window stays in the Dock", DESKTOP + "MainWindowBehaviourMacOS.mm", "if (native.miniaturized)", "if (false)"),
    ("a regular application is made regular again", DESKTOP + "MainWindowBehaviourMacOS.mm",
     "if (NSApp.activationPolicy == NSApplicationActivationPolicyRegular)", "if (false)"),
    ("the new call is made on every system", DESKTOP + "MainWindowBehaviourMacOS.mm", "if (@available(macOS 14.0, *))", "if (true)"),
    ("the panel hides when its program is not the active one", DESKTOP + "StatusPanelMacOS.mm",
     "native.hidesOnDeactivate = NO;", ""),
    ("the panel takes the active program's place", DESKTOP + "StatusPanelMacOS.mm",
     "native.styleMask |= NSWindowStyleMaskNonactivatingPanel;", ""),
    ("a monitor of events is left behind", DESKTOP + "StatusPanelMacOS.mm", "[NSEvent removeMonitor:elsewhere_];", ";"),
    ("the panel closes by the press that is for the status item", DESKTOP + "StatusPanelMacOS.mm",
     "if (!item_.contains(QCursor::pos()))", ""),
    ("a press in the panel closes it", DESKTOP + "StatusPanelMacOS.mm", "if (window != panel &&", "if ("),
    ("the menu's target is let go", DESKTOP + "MenuBarMacOS.mm", "targets_.push_back(target);", ""),
    ("the windows' menu is not told to the application", DESKTOP + "MenuBarMacOS.mm", "application.windowsMenu = windows_;", ""),
    ("Qt's menu stays after the launch", DESKTOP + "MenuBarMacOS.mm", "                          installMenus();\n", ""),
    ("an action is not passed on", DESKTOP + "ActionTargetMacOS.mm", "self.chosen();", ";"),
    ("an action is passed on to nobody", DESKTOP + "ActionTargetMacOS.mm", "if (self.chosen)", "if (true)"),
    ("an announcement interrupts what it need not", DESKTOP + "AnnouncementMacOS.mm",
     "urgent ? NSAccessibilityPriorityHigh : NSAccessibilityPriorityMedium", "NSAccessibilityPriorityHigh"),
    ("an announcement is made in no window", DESKTOP + "AnnouncementMacOS.mm", "if (window == nil)", "if (false)"),
    ("an announcement that nobody hears is said by others", DESKTOP + "AnnouncementMacOS.mm",
     "if (window == nil) {\n            return true;", "if (window == nil) {\n            return false;"),
    ("an announcement without its text", DESKTOP + "AnnouncementMacOS.mm", "text.toNSString()", '@""'),
    ("an announcement leaves its dictionary behind", DESKTOP + "AnnouncementMacOS.mm", "@autoreleasepool {", "{"),
    ("windows are drawn with the device that takes most power", DESKTOP + "GraphicsDeviceMacOS.mm", "if (device.isLowPower)",
     "if (!device.isLowPower)"),
    ("the only device is chosen", DESKTOP + "GraphicsDeviceMacOS.mm", "devices.count < 2", "devices.count < 1"),
    ("the device is let go while it draws", DESKTOP + "GraphicsDeviceMacOS.mm", "new DeviceOfWindow(window, device, queue);", ""),
    ("the device is kept when its window is gone", DESKTOP + "GraphicsDeviceMacOS.mm", ": QObject(&window)", ": QObject(nullptr)"),
    ("Qt Quick is not told of the device", DESKTOP + "GraphicsDeviceMacOS.mm",
     "window.setGraphicsDevice(QQuickGraphicsDevice", "(void)(QQuickGraphicsDevice"),
    ("a device without a queue is used", DESKTOP + "GraphicsDeviceMacOS.mm", "if (queue == nil)", "if (device == nil)"),
    ("the graphics state is not restored", DESKTOP + "NativeImageMacOS.mm", "[NSGraphicsContext restoreGraphicsState];", ""),
    ("the picture is not drawn out", DESKTOP + "NativeImageMacOS.mm", "[context flushGraphics];", ""),
    ("the picture lies in memory that is gone", DESKTOP + "NativeImageMacOS.mm", ".copy();", ";"),
    ("rows are taken for as long as their pixels", DESKTOP + "NativeImageMacOS.mm", "bitmap.bytesPerRow", "width * 4"),
    ("a declined place is used", DESKTOP + "FileDialogsMacOS.mm", "if ([panel runModal] != NSModalResponseOK)",
     "if ([panel runModal] == 77)"),
    ("a second save panel is opened", DESKTOP + "FileDialogsMacOS.mm", "std::exchange(asking, true)",
     "std::exchange(asking, true) && false"),
    ("an open save panel is denied", DESKTOP + "FileDialogsMacOS.mm", "return asking;", "return false;"),
    ("the file name is not proposed", DESKTOP + "FileDialogsMacOS.mm", "panel.nameFieldStringValue = proposedName.toNSString();", ""),
    ("the activity does not end", PLATFORM + "ActivityMacOS.mm",
     "[NSProcessInfo.processInfo endActivity:token_->activity];", ""),
    ("the activity keeps the Mac awake", PLATFORM + "ActivityMacOS.mm", "NSActivityUserInitiatedAllowingIdleSystemSleep",
     "NSActivityUserInitiated"),
    ("a value of the bundle is not looked at for its type", PLATFORM + "BundleInfoMacOS.mm",
     "if (![value isKindOfClass:[NSString class]])", "if (value == nil)"),
    ("whoever shall be forced is asked", PLATFORM + "Processes/RunningApplicationsMacOS.mm", "[application forceTerminate];",
     "[application terminate];"),
    ("the type of the session's entry is not looked at", PLATFORM + "Session/SessionPresenceMacOS.mm",
     "![value isKindOfClass:[NSNumber class]] ||", ""),
    ("coming and going of the session are exchanged", PLATFORM + "Session/SessionPresenceMacOS.mm", "setInFront(inFront);",
     "setInFront(!inFront);"),
    ("the session is looked up before it is observed, then forgotten", PLATFORM + "Session/SessionPresenceMacOS.mm",
     "setInFront(isOnConsole());", ""),
    ("there is no watch of the sleep", PLATFORM + "Session/SleepWatchMacOS.cpp", "return std::make_unique<SleepWatchMacOS>();",
     "return nullptr;"),
    ("a sleep is over that never began", PLATFORM + "Session/SleepWatchMacOS.cpp", "void ready() override {}",
     "void ready() override { Q_EMIT awake(); }"),
    ("notifications are for a tool that no Mac has", PLATFORM + "NotifierMacOS.cpp", "/usr/bin/osascript", "/bin/osascript"),
    ("title and text of a notification are exchanged", PLATFORM + "NotifierMacOS.cpp", "title, message);", "message, title);"),
    ("the child becomes a group of its own", PLATFORM + "ProcessScopeMacOS.cpp",
     "namespace Fenwhirl {\n\n"
     "void ProcessScope::separate(pid_t /*process*/, const QString& /*name*/, const QString& /*description*/) {",
     "#include <unistd.h>\nnamespace Fenwhirl {\n\n"
     "void ProcessScope::separate(pid_t process, const QString&, const QString&) {\n    setpgid(process, process);"),
    ("a preference is not written at once", PLATFORM + "Preferences/PreferencesStoreMacOS.cpp",
     "CFPreferencesSynchronize(asString(application), kCFPreferencesCurrentUser, kCFPreferencesAnyHost);", ""),
    ("a text that cannot be made removes its preference", PLATFORM + "Preferences/PreferencesStoreMacOS.cpp", "if (value && !object)",
     "if (false)"),
    ("a preference is kept for ever in memory", PLATFORM + "Preferences/PreferencesStoreMacOS.cpp",
     "void operator()(CFTypeRef object) const { CFRelease(object); }", "void operator()(CFTypeRef) const {}"),
    ("the list of languages is kept for ever in memory", PLATFORM + "PreferredLanguagesMacOS.cpp", "CFRelease(array);",
     "(void)array;"),
    ("the clock takes ticks for nanoseconds", PLATFORM + "Toolkit/ClockMacOS.cpp", "* ratio.numer / ratio.denom", ""),
    ("a process that is gone has a start", PLATFORM + "Processes/ProcessTableMacOS.cpp", "size < sizeof process || process.kp_proc.p_pid != pid", "false"),
    ("a signal reaches whoever has the number now", PLATFORM + "Processes/ProcessTableMacOS.cpp", "&& startOfProcess(pid) == start", ""),
    ("children inherit every descriptor", PLATFORM + "Toolkit/ChildProcessMacOS.cpp",
     "flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);", "(void)flags;"),
    ("a pipe is inherited", PLATFORM + "Toolkit/ChildProcessMacOS.cpp", "fcntl(end, F_SETFD, FD_CLOEXEC) != 0", "false && end"),
    ("descriptors are closed below the first", PLATFORM + "Entry/HelperProcessMacOS.cpp", "open[i].proc_fd >= first &&", ""),
    ("the way to the executable is not resolved", PLATFORM + "Entry/ExecutablePathMacOS.cpp",
     "return std::string(resolved);", "return std::string(raw);"),
    ("the service of the controller is kept", CORE + "IOKitTransport.cpp", "IOObjectRelease(service);", ""),
    ("the connection to the controller is kept", CORE + "IOKitTransport.cpp", "IOServiceClose(connection_);", ""),
    ("a refusal of the kernel counts as an answer", CORE + "IOKitTransport.cpp",
     "&outputSize) != KERN_SUCCESS)", "&outputSize) == 77)"),
    ("a Mac with Intel's processor counts as translated", CORE + "SystemTextMacOS.cpp",
     'sysctlbyname("sysctl.proc_translated", &translated, &size, nullptr, 0) == 0 && translated == 1',
     'sysctlbyname("sysctl.proc_translated", &translated, &size, nullptr, 0) != 0 || translated == 1'),
    ("the self-check takes any signature", DESKTOP + "SystemChecksMacOS.mm", "return result->succeeded()\n", "return result\n"),
    ("the self-check takes every download for agreed to", DESKTOP + "SystemChecksMacOS.mm", "constexpr unsigned agreed = 0x40;",
     "constexpr unsigned agreed = 0x80;"),
    ("the self-check leaves an icon in the Dock", DESKTOP + "SystemChecksMacOS.mm", "MainWindowBehaviour::setAccessory();", ""),
    ("the self-check needs no graphics processor", DESKTOP + "SystemChecksMacOS.mm", "return device != nil ? CheckResult",
     "return true ? CheckResult"),
    ("the self-check looks at the titles of the menus alone", DESKTOP + "SystemChecksMacOS.mm",
     "if (titles(menu) != titles(wanted.items))", "if (false)"),
    ("the self-check looks at the first menu alone", DESKTOP + "SystemChecksMacOS.mm", "i < count; ++i) {", "i < 1; ++i) {"),
)


def plant(folder, build, mistake):
    """Builds and runs the tests with one mistake. Returns whether it was noticed, and by what."""
    source, original = mutation.planted(folder, mistake)
    folder = os.path.dirname(source)
    program = os.path.join(folder, "MacTest")
    build.link("MacTest", [build.compile(source, original, mistake[0])], program, mistake[0])
    try:
        ran = subprocess.run([program, "--gtest_brief=1"], cwd=folder, check=False, capture_output=True, text=True,
                             errors="replace", timeout=60)
    except subprocess.TimeoutExpired:
        return True, "it did not end"
    if ran.returncode == 0:
        return False, ""
    lines = (ran.stdout + ran.stderr).splitlines()
    return True, next((line.strip() for line in lines if "FAILED  ]" in line or "ERROR:" in line or "runtime error" in line
                       or "Objective-C:" in line), f"status {ran.returncode}")


def main():
    build = mutation.Build(os.path.join(mutation.ROOT, "build/macos-executed"))
    mistakes = mutation.of(MISTAKES, sys.argv[1:])
    noticed = 0
    with tempfile.TemporaryDirectory(prefix="fenwhirl-mutations-") as folder, \
            concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
        results = workers.map(lambda mistake: plant(folder, build, mistake), mistakes)
        for mistake, (caught, by) in zip(mistakes, results):
            noticed += caught
            print(f"{'noticed' if caught else 'MISSED '}  {mistake[0]}{': ' + by[:120] if by else ''}", flush=True)
    print(f"{noticed} of {len(mistakes)} mistakes were noticed")
    return 0 if noticed >= min(LEAST, len(mistakes)) else 1


if __name__ == "__main__":
    sys.exit(main())
