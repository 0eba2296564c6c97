#include "Fenwhirl/Platform/Desktop/NativeWindowMacOS.h"
#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

#include <QCursor>
#include <QGuiApplication>

#import <AppKit/AppKit.h>
#include <unistd.h>
#include <utility>

namespace Fenwhirl {

namespace {

// Whether this is a visible window of Qt's other than the panel. The status item's window is not one of
// these.
bool isOtherWindow(NSWindow* native, const QWindow* panel) {
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window != panel && window->isVisible() && nativeWindow(*window) == native) {
            return true;
        }
    }
    return false;
}

class OutsideClickMonitorMacOS final : public OutsideClickMonitor {
public:
    OutsideClickMonitorMacOS(QWindow& panel, const QRect& item, std::function<void()> outside)
        : panel_(panel)
        , item_(item)
        , outside_(std::move(outside)) {
        @autoreleasepool {
            const NSEventMask presses =
                NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown | NSEventMaskOtherMouseDown;
            elsewhere_ = [NSEvent addGlobalMonitorForEventsMatchingMask:presses
                                                                handler:^(NSEvent* event) {
                                                                  (void)event;
                                                                  pressedElsewhere();
                                                                }];
            here_ = [NSEvent addLocalMonitorForEventsMatchingMask:presses
                                                          handler:^NSEvent*(NSEvent* event) {
                                                            if (isOtherWindow(event.window, &panel_)) {
                                                                outside_();
                                                            }
                                                            return event;
                                                          }];
            // The user switched to another program with the keyboard or Mission Control.
            activated_ = [NSWorkspace.sharedWorkspace.notificationCenter
                addObserverForName:NSWorkspaceDidActivateApplicationNotification
                            object:nil
                             queue:NSOperationQueue.mainQueue
                        usingBlock:^(NSNotification* notification) {
                          NSRunningApplication* chosen = notification.userInfo[NSWorkspaceApplicationKey];
                          if (chosen.processIdentifier != getpid()) {
                              outside_();
                          }
                        }];
        }
    }

    ~OutsideClickMonitorMacOS() override {
        @autoreleasepool {
            // A monitor that could not be installed is nil, which removeMonitor does not accept.
            if (elsewhere_ != nil) {
                [NSEvent removeMonitor:elsewhere_];
            }
            if (here_ != nil) {
                [NSEvent removeMonitor:here_];
            }
            [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:activated_];
        }
    }

    OutsideClickMonitorMacOS(const OutsideClickMonitorMacOS&) = delete;
    OutsideClickMonitorMacOS& operator=(const OutsideClickMonitorMacOS&) = delete;

private:
    // Ignores clicks on the status item, which closes the panel itself, however long that takes.
    void pressedElsewhere() {
        if (!item_.contains(QCursor::pos())) {
            outside_();
        }
    }

    QWindow& panel_;
    QRect item_;
    std::function<void()> outside_;
    id elsewhere_ = nil;
    id here_ = nil;
    id<NSObject> activated_ = nil;
};

} // namespace

Qt::WindowFlags statusPanelFlags() {
    return Qt::Tool | Qt::FramelessWindowHint;
}

void prepareStatusPanel(QWindow& window) {
    // Qt's property for a tool window that stays visible while the program is not active.
    window.setProperty("_q_macAlwaysShowToolWindow", true);
}

void showStatusPanel(QWindow& window, const QString& /*token*/) {
    @autoreleasepool {
        NSWindow* native = nativeWindow(window);
        native.styleMask |= NSWindowStyleMaskNonactivatingPanel;
        native.hidesOnDeactivate = NO;
        native.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                                    NSWindowCollectionBehaviorTransient |
                                    NSWindowCollectionBehaviorFullScreenAuxiliary;
        window.show();
        // After `show`, because Qt then sets the level that belongs to the window's type.
        native.level = NSPopUpMenuWindowLevel;
        // Gives the panel the keyboard focus, while the program in front stays active.
        [native makeKeyAndOrderFront:nil];
    }
}

void grabPresses(QWindow& /*window*/) {}

std::unique_ptr<OutsideClickMonitor> OutsideClickMonitor::begin(QWindow& panel, const QRect& item,
                                                                std::function<void()> outside) {
    return std::make_unique<OutsideClickMonitorMacOS>(panel, item, std::move(outside));
}

bool focusFollowsPointer() {
    return false;
}

PanelCompositing panelSurroundings() {
    return PanelCompositing::translucent;
}

void declareShadow(QWindow& window, const QMargins& /*margins*/) {
    if (window.handle() == nullptr) { // no native window yet, so no outdated shadow
        return;
    }
    @autoreleasepool {
        [nativeWindow(window) invalidateShadow]; // the system would keep the shadow of the old shape
    }
}

} // namespace Fenwhirl
