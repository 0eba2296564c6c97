#include "Fenwhirl/Platform/Desktop/MenuBar.h"

#import "MacTest.h"

namespace Fenwhirl {

using Kind = MenuItem::Kind;

namespace {

class MenuBarTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        application_ = NSApplication.sharedApplication;
    }

    void TearDown() override {
        application_ = nil;
        MacTest::TearDown();
    }

    [[nodiscard]] QList<Menu> menus() {
        return {{Menu::Role::application,
                 QStringLiteral("Fenwhirl"),
                 {{Kind::services, QStringLiteral("Services"), {}, {}},
                  {},
                  {Kind::hideOthers, QStringLiteral("Masquer les autres"), QStringLiteral("h"), {}},
                  {Kind::quit, QStringLiteral("Quitter Fenwhirl"), QStringLiteral("q"), {}}}},
                {Menu::Role::plain,
                 QStringLiteral("Présentation"),
                 {{Kind::own, QStringLiteral("Capteurs"), QStringLiteral("3"), [this] { ++chosen_; }}}},
                {Menu::Role::windows,
                 QStringLiteral("Fenêtre"),
                 {{Kind::minimize, QStringLiteral("Placer dans le Dock"), QStringLiteral("m"), {}}}},
                {Menu::Role::help, QStringLiteral("Aide"), {}}};
    }

    NSMenu* menu(NSUInteger index) { return application_.mainMenu.itemArray[index].submenu; }

    static std::string action(NSMenuItem* item) { return sel_getName(item.action); }

    NSApplication* application_ = nil;
    int chosen_ = 0;
};

} // namespace

TEST_F(MenuBarTest, IsTheApplicationsOwn) {
    const auto bar = beforeTheEventLoop([] { return MenuBar::create(); });
    EXPECT_EQ(application_.mainMenu, nil);
    beforeTheEventLoop([&] { bar->show(menus()); });
    ASSERT_EQ(application_.mainMenu.itemArray.count, 4U);
    EXPECT_EQ(QString::fromNSString(menu(1).title), QStringLiteral("Présentation"));
    EXPECT_EQ(application_.windowsMenu, menu(2));
    EXPECT_EQ(application_.helpMenu, menu(3));
    NSArray<NSMenuItem*>* items = menu(0).itemArray;
    ASSERT_EQ(items.count, 4U);
    EXPECT_EQ(application_.servicesMenu, items[0].submenu);
    EXPECT_NE(application_.servicesMenu, nil);
    EXPECT_TRUE(items[1].isSeparatorItem);
    EXPECT_EQ(items[2].keyEquivalentModifierMask, NSEventModifierFlagCommand | NSEventModifierFlagOption);
    EXPECT_EQ(QString::fromNSString(items[3].title), QStringLiteral("Quitter Fenwhirl"));
    EXPECT_EQ(QString::fromNSString(items[3].keyEquivalent), QStringLiteral("q"));
    EXPECT_EQ(items[3].keyEquivalentModifierMask, NSEventModifierFlagCommand);
}

TEST_F(MenuBarTest, UsesTheStandardActionsOfTheSystem) {
    const std::pair<Kind, const char*> actions[] = {{Kind::about, "orderFrontStandardAboutPanel:"},
                                                    {Kind::hide, "hide:"},
                                                    {Kind::hideOthers, "hideOtherApplications:"},
                                                    {Kind::showAll, "unhideAllApplications:"},
                                                    {Kind::quit, "terminate:"},
                                                    {Kind::cut, "cut:"},
                                                    {Kind::copy, "copy:"},
                                                    {Kind::paste, "paste:"},
                                                    {Kind::selectAll, "selectAll:"},
                                                    {Kind::close, "performClose:"},
                                                    {Kind::minimize, "performMiniaturize:"},
                                                    {Kind::zoom, "performZoom:"},
                                                    {Kind::bringAllToFront, "arrangeInFront:"}};
    const auto bar = MenuBar::create();
    for (const auto& [kind, selector] : actions) {
        bar->show({{Menu::Role::plain, QStringLiteral("menu"), {{kind, QStringLiteral("item"), {}, {}}}}});
        NSMenuItem* item = menu(0).itemArray[0];
        EXPECT_EQ(action(item), selector);
        EXPECT_EQ(item.target, nil) << "whatever has the focus";
    }
}

TEST_F(MenuBarTest, CallsTheHandlersOfOurItems) {
    const auto bar = MenuBar::create();
    beforeTheEventLoop([&] { bar->show(menus()); });
    NSMenuItem* item = menu(1).itemArray[0];
    ASSERT_NE(item.target, nil);
    FakeMac::sendAction(item.action, item.target, item);
    EXPECT_EQ(chosen_, 1);
}

TEST_F(MenuBarTest, ReleasesThePreviousMenus) {
    const auto bar = MenuBar::create();
    beforeTheEventLoop([&] { bar->show(menus()); });
    const std::size_t menusOfOne = Runtime::liveObjects("NSMenu");
    const std::size_t itemsOfOne = Runtime::liveObjects("NSMenuItem");
    beforeTheEventLoop([&] {
        for (int i = 0; i < 20; ++i) {
            bar->show(menus());
        }
    });
    EXPECT_EQ(Runtime::liveObjects("NSMenu"), menusOfOne);
    EXPECT_EQ(Runtime::liveObjects("NSMenuItem"), itemsOfOne);
    EXPECT_EQ(Runtime::liveObjects("FenwhirlActionTarget"), 1U);
}

TEST_F(MenuBarTest, IsInstalledAgainAfterTheLaunch) {
    const auto bar = MenuBar::create();
    bar->show(menus());
    NSMenu* ours = application_.mainMenu;
    application_.mainMenu = [[NSMenu alloc] initWithTitle:@"Qt's"];
    FakeMac::post(NSNotificationCenter.defaultCenter, NSApplicationDidFinishLaunchingNotification);
    EXPECT_EQ(application_.mainMenu, ours);
}

TEST_F(MenuBarTest, CallsNobodyAfterItsEnd) {
    auto bar = MenuBar::create();
    bar->show(menus());
    NSMenuItem* item = menu(1).itemArray[0];
    id target = item.target;
    beforeTheEventLoop([&] { bar.reset(); });
    EXPECT_EQ(FakeMac::observers(), 0U);
    FakeMac::sendAction(item.action, target, item);
    EXPECT_EQ(chosen_, 0);
}

} // namespace Fenwhirl
