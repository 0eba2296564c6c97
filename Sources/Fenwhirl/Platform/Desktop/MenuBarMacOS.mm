#include "Fenwhirl/Platform/Desktop/ActionTargetMacOS.h"
#include "Fenwhirl/Platform/Desktop/MenuBar.h"

#import <AppKit/AppKit.h>
#include <utility>
#include <vector>

namespace Fenwhirl {

namespace {

// The action that the system's own objects perform: whatever has the focus, the window or the application.
SEL systemAction(MenuItem::Kind kind) {
    switch (kind) {
    case MenuItem::Kind::about:
        return @selector(orderFrontStandardAboutPanel:);
    case MenuItem::Kind::hide:
        return @selector(hide:);
    case MenuItem::Kind::hideOthers:
        return @selector(hideOtherApplications:);
    case MenuItem::Kind::showAll:
        return @selector(unhideAllApplications:);
    case MenuItem::Kind::quit:
        return @selector(terminate:);
    case MenuItem::Kind::cut:
        return @selector(cut:);
    case MenuItem::Kind::copy:
        return @selector(copy:);
    case MenuItem::Kind::paste:
        return @selector(paste:);
    case MenuItem::Kind::selectAll:
        return @selector(selectAll:);
    case MenuItem::Kind::close:
        return @selector(performClose:);
    case MenuItem::Kind::minimize:
        return @selector(performMiniaturize:);
    case MenuItem::Kind::zoom:
        return @selector(performZoom:);
    case MenuItem::Kind::bringAllToFront:
        return @selector(arrangeInFront:);
    case MenuItem::Kind::own:
    case MenuItem::Kind::separator:
    case MenuItem::Kind::services:
        break;
    }
    return nullptr;
}

class MenuBarMacOS final : public MenuBar {
public:
    MenuBarMacOS() {
        @autoreleasepool { // the event loop, which has a pool of its own, is not running yet
            // Qt installs a menu of its own, part of it only when the launch has finished.
            launched_ = [NSNotificationCenter.defaultCenter
                addObserverForName:NSApplicationDidFinishLaunchingNotification
                            object:nil
                             queue:NSOperationQueue.mainQueue
                        usingBlock:^(NSNotification* notification) {
                          (void)notification;
                          installMenus();
                        }];
        }
    }

    ~MenuBarMacOS() override {
        @autoreleasepool {
            [NSNotificationCenter.defaultCenter removeObserver:launched_];
            for (FenwhirlActionTarget* target : targets_) {
                target.chosen = nullptr; // the menus may outlive what they would call
            }
        }
    }

    MenuBarMacOS(const MenuBarMacOS&) = delete;
    MenuBarMacOS& operator=(const MenuBarMacOS&) = delete;

    void show(const QList<Menu>& menus) override {
        @autoreleasepool {
            // The old targets must live until `installMenus` has replaced the old menus.
            const std::vector<FenwhirlActionTarget*> before = std::exchange(targets_, {});
            bar_ = [[NSMenu alloc] initWithTitle:@""];
            services_ = nil;
            windows_ = nil;
            help_ = nil;
            for (const Menu& menu : menus) {
                NSMenuItem* place = [[NSMenuItem alloc] initWithTitle:menu.title.toNSString()
                                                               action:nullptr
                                                        keyEquivalent:@""];
                place.submenu = make(menu);
                [bar_ addItem:place];
            }
            installMenus();
        }
    }

private:
    NSMenu* make(const Menu& menu) {
        NSMenu* made = [[NSMenu alloc] initWithTitle:menu.title.toNSString()];
        for (const MenuItem& item : menu.items) {
            [made addItem:make(item)];
        }
        if (menu.role == Menu::Role::windows) {
            windows_ = made;
        } else if (menu.role == Menu::Role::help) {
            help_ = made;
        }
        return made;
    }

    NSMenuItem* make(const MenuItem& item) {
        if (item.kind == MenuItem::Kind::separator) {
            return [NSMenuItem separatorItem];
        }
        NSMenuItem* made = [[NSMenuItem alloc] initWithTitle:item.title.toNSString()
                                                      action:systemAction(item.kind)
                                               keyEquivalent:item.key.toNSString()];
        if (item.kind == MenuItem::Kind::hideOthers) {
            made.keyEquivalentModifierMask = NSEventModifierFlagCommand | NSEventModifierFlagOption;
        }
        if (item.kind == MenuItem::Kind::services) {
            services_ = [[NSMenu alloc] initWithTitle:item.title.toNSString()];
            made.submenu = services_;
        }
        if (item.kind == MenuItem::Kind::own) {
            FenwhirlActionTarget* target = [[FenwhirlActionTarget alloc] init];
            target.chosen = item.chosen;
            targets_.push_back(target); // kept here, because a menu item's target is a weak reference
            made.target = target;
            made.action = @selector(itemChosen:);
        }
        return made;
    }

    void installMenus() {
        if (bar_ == nil) {
            return;
        }
        @autoreleasepool {
            NSApplication* application = NSApp;
            application.mainMenu = bar_;
            application.servicesMenu = services_;
            application.windowsMenu = windows_;
            application.helpMenu = help_;
        }
    }

    id<NSObject> launched_;
    NSMenu* bar_ = nil;
    NSMenu* services_ = nil;
    NSMenu* windows_ = nil;
    NSMenu* help_ = nil;
    std::vector<FenwhirlActionTarget*> targets_;
};

} // namespace

std::unique_ptr<MenuBar> MenuBar::create() {
    return std::make_unique<MenuBarMacOS>();
}

} // namespace Fenwhirl
