#import "MacTest.h"

extern "C" void* objc_autoreleasePoolPush();
extern "C" void objc_autoreleasePoolPop(void* pool);

namespace Fenwhirl {

void MacTest::SetUp() {
    before_ = Runtime::allLiveObjects();
    pool_ = objc_autoreleasePoolPush();
}

void MacTest::TearDown() {
    EXPECT_THAT(Runtime::takeStrayAutoreleases(), testing::IsEmpty()) << "autoreleased where no pool is";
    objc_autoreleasePoolPop(pool_);
    {
        // checkEnd() autoreleases objects itself.
        void* const own = objc_autoreleasePoolPush();
        FakeMac::checkEnd();
        objc_autoreleasePoolPop(own);
    }
    EXPECT_THAT(FakeMac::takeViolations(), testing::IsEmpty());
    EXPECT_EQ(Runtime::allLiveObjects(), before_) << "objects that nobody let go";
}

} // namespace Fenwhirl
