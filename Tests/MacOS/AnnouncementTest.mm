#include "Fenwhirl/Platform/Desktop/Announcement.h"

#import "MacTest.h"

namespace Fenwhirl {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class AnnouncementTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        (void)NSApplication.sharedApplication;
        FakeMac::journal().clear();
    }
};

} // namespace

TEST_F(AnnouncementTest, IsPostedForTheKeyWindow) {
    @autoreleasepool {
        NSWindow* window = [[NSWindow alloc] init];
        static_cast<NSApplication*>(NSApp).keyWindow = window;
        beforeTheEventLoop([] {
            EXPECT_TRUE(announceBySystem(QStringLiteral("Le Mac est chaud"), false));
            EXPECT_TRUE(announceBySystem(QStringLiteral("Refus\u00e9"), true));
        });
        EXPECT_THAT(FakeMac::journal(),
                    ElementsAre("announce \"Le Mac est chaud\" at 50", "announce \"Refusé\" at 90"));
        static_cast<NSApplication*>(NSApp).keyWindow = nil;
    }
}

TEST_F(AnnouncementTest, IsNotPostedWithoutAKeyWindow) {
    EXPECT_TRUE(announceBySystem(QStringLiteral("Le Mac est chaud"), true)) << "nobody else has to say it";
    EXPECT_THAT(FakeMac::journal(), IsEmpty());
}

} // namespace Fenwhirl
