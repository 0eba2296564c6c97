#include "Fenwhirl/Platform/Activity.h"
#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/Desktop/ApplicationIcon.h"
#include "Fenwhirl/Platform/Desktop/FileDialogs.h"
#include "Fenwhirl/Platform/Desktop/SystemSymbol.h"
#include "Fenwhirl/Platform/PreferredLanguages.h"
#include "Fenwhirl/Platform/Processes/RunningApplications.h"
#include "Fenwhirl/Platform/Session/SleepWatch.h"
#include "Fenwhirl/Platform/SystemName.h"
#import "MacTest.h"

#include <QImage>

namespace Fenwhirl {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// Each function tested here opens an autorelease pool itself, because it may be called where none is open.

using ActivityTest = MacTest;

TEST_F(ActivityTest, RunsFromItsBeginningToItsEnd) {
    beforeTheEventLoop([] {
        auto first = std::make_unique<Activity>(QStringLiteral("Fans are driven"));
        const Activity second(QStringLiteral("Alerts are on"));
        EXPECT_THAT(FakeMac::activities(), UnorderedElementsAre(QStringLiteral("Fans are driven efffff"),
                                                                QStringLiteral("Alerts are on efffff")));
        first.reset();
        EXPECT_THAT(FakeMac::activities(), ElementsAre(QStringLiteral("Alerts are on efffff")));
    });
    EXPECT_THAT(FakeMac::activities(), IsEmpty());
}

using BundleInfoTest = MacTest;

TEST_F(BundleInfoTest, IsWhatTheBundleSays) {
    beforeTheEventLoop([] {
        EXPECT_EQ(BundleInfo::name(), QStringLiteral("Fenwhirl"));
        EXPECT_EQ(BundleInfo::shortVersion(), QStringLiteral("0.1"));
        EXPECT_EQ(BundleInfo::path(), QStringLiteral("/Applications/Fenwhirl.app"));
    });
}

TEST_F(BundleInfoTest, IsAbsentWhenMissingOrOfAnotherType) {
    FakeMac::settings().bundle = {{QStringLiteral("CFBundleName"), QStringLiteral("<a number>")}};
    EXPECT_EQ(BundleInfo::name(), std::nullopt);
    EXPECT_EQ(BundleInfo::shortVersion(), std::nullopt);
}

using SystemNameTest = MacTest;

TEST_F(SystemNameTest, IsTheComputersOwn) {
    EXPECT_EQ(beforeTheEventLoop(computerName), QStringLiteral("Mac de test"));
    FakeMac::settings().hasComputerName = false;
    EXPECT_EQ(computerName(), QString());
}

using RunningApplicationsTest = MacTest;

TEST_F(RunningApplicationsTest, AreAskedOrForced) {
    FakeMac::settings().running = {{100, {}}, {200, {}}};
    beforeTheEventLoop([] {
        EXPECT_TRUE(askApplicationToTerminate(100, false));
        EXPECT_TRUE(askApplicationToTerminate(200, true));
        EXPECT_FALSE(askApplicationToTerminate(300, true));
    });
    EXPECT_EQ(FakeMac::settings().running[100], QStringLiteral("terminate "));
    EXPECT_EQ(FakeMac::settings().running[200], QStringLiteral("forceTerminate "));
}

using SleepWatchTest = MacTest;

TEST_F(SleepWatchTest, SaysNothing) {
    const auto watch = beforeTheEventLoop(SleepWatch::create);
    ASSERT_NE(watch, nullptr);
    int said = 0;
    QObject::connect(watch.get(), &SleepWatch::goingToSleep, [&] { ++said; });
    QObject::connect(watch.get(), &SleepWatch::awake, [&] { ++said; });
    FakeMac::post(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceDidWakeNotification);
    watch->ready();
    EXPECT_EQ(said, 0);
}

using FileDialogsTest = MacTest;

TEST_F(FileDialogsTest, GiveThePathThatTheUserChose) {
    FakeMac::settings().savePath = QStringLiteral("/Users/test/Bureau/é.txt");
    EXPECT_EQ(beforeTheEventLoop([] { return askSavePath(QStringLiteral("Fenwhirl-diagnostic.txt"), {}); }),
              QStringLiteral("/Users/test/Bureau/é.txt"));
    EXPECT_THAT(FakeMac::journal(), Contains("proposed Fenwhirl-diagnostic.txt"));
}

TEST_F(FileDialogsTest, GiveNothingWhenTheUserDeclined) {
    EXPECT_EQ(askSavePath(QStringLiteral("Fenwhirl-diagnostic.txt"), {}), QString());
}

TEST_F(FileDialogsTest, OpenOnePanelAtATime) {
    FakeMac::settings().savePath = QStringLiteral("/Users/test/first.txt");
    int asked = 0;
    FakeMac::settings().whileAsking = [&] {
        ++asked;
        EXPECT_TRUE(isAskingSavePath());
        EXPECT_EQ(askSavePath(QStringLiteral("second.txt"), {}), QString());
    };
    for (int time = 1; time <= 2; ++time) {
        EXPECT_EQ(askSavePath(QStringLiteral("first.txt"), {}), QStringLiteral("/Users/test/first.txt"));
        EXPECT_EQ(asked, time);
        EXPECT_FALSE(isAskingSavePath());
    }
}

TEST_F(FileDialogsTest, ShowTheFile) {
    beforeTheEventLoop([] { revealInFileBrowser(QStringLiteral("/Users/test/é.txt")); });
    EXPECT_THAT(FakeMac::journal(), ElementsAre("show /Users/test/é.txt"));
}

using PreferredLanguagesTest = MacTest;

TEST_F(PreferredLanguagesTest, AreThoseOfTheSystemInOrder) {
    EXPECT_EQ(beforeTheEventLoop(preferredLanguages),
              QStringList({QStringLiteral("fr-FR"), QStringLiteral("en-US")}));
    FakeMac::settings().hasLanguages = false;
    EXPECT_EQ(preferredLanguages(), QStringList());
}

using NativeImageTest = MacTest;

TEST_F(NativeImageTest, IsTheSymbolAtItsSize) {
    const QImage symbol = beforeTheEventLoop([] { return systemSymbol(QStringLiteral("fan"), 15, false); });
    EXPECT_EQ(symbol.size(), QSize(19, 17)); // 18.75 and 16.5
    // The image has its own rows, without the bitmap's padding, and is not upside down.
    EXPECT_EQ(symbol.pixelColor(7, 3), QColor(10, 7, 3));
    EXPECT_THAT(FakeMac::journal(), ElementsAre("-[NSImage drawInRect:] 18.750000 x 16.500000",
                                                "-[NSGraphicsContext flushGraphics]"));
}

TEST_F(NativeImageTest, IsAsBoldAsAsked) {
    (void)systemSymbol(QStringLiteral("fan"), 10, false);
    const CGFloat regular = FakeMac::lastWeight();
    (void)systemSymbol(QStringLiteral("fan"), 10, true);
    EXPECT_EQ(regular, NSFontWeightRegular);
    EXPECT_EQ(FakeMac::lastWeight(), NSFontWeightBold);
}

TEST_F(NativeImageTest, IsNothingWithoutASymbolABitmapOrAContext) {
    EXPECT_TRUE(systemSymbol(QStringLiteral("no.such.symbol"), 15, false).isNull());
    EXPECT_TRUE(systemSymbol(QStringLiteral("fan"), 0, false).isNull());
    FakeMac::settings().makesContexts = false;
    EXPECT_TRUE(systemSymbol(QStringLiteral("fan"), 15, false).isNull());
    FakeMac::settings().makesBitmaps = false;
    EXPECT_TRUE(systemSymbol(QStringLiteral("fan"), 15, false).isNull());
}

TEST_F(NativeImageTest, IsTheIconOfAProgram) {
    const QImage icon =
        beforeTheEventLoop([] { return applicationIcon(QStringLiteral("/Applications/Jeu.app"), 56); });
    EXPECT_EQ(icon.size(), QSize(56, 56));
    EXPECT_THAT(FakeMac::journal(), Contains("icon of /Applications/Jeu.app"));
    FakeMac::settings().makesIcons = false;
    EXPECT_TRUE(applicationIcon(QStringLiteral("/Applications/Jeu.app"), 56).isNull());
}

} // namespace Fenwhirl
