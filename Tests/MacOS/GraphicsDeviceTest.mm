#include "Fenwhirl/Platform/Desktop/GraphicsDevice.h"

#import "MacTest.h"

#include <QQuickGraphicsDevice>
#include <QQuickWindow>

namespace Fenwhirl {

using GraphicsDeviceTest = MacTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

void choose(QQuickWindow& window) {
    beforeTheEventLoop([&] { chooseGraphicsDevice(window); });
}

} // namespace

TEST_F(GraphicsDeviceTest, IsTheOneThatTakesLittlePower) {
    FakeMac::settings().graphicsDevices = {false, true};
    QQuickWindow window;
    choose(window);
    EXPECT_FALSE(window.graphicsDevice().isNull());
    EXPECT_THAT(FakeMac::journal(), ElementsAre("Qt Quick draws with device 1"));
}

TEST_F(GraphicsDeviceTest, StaysAsLongAsItsWindow) {
    FakeMac::settings().graphicsDevices = {true, false};
    {
        QQuickWindow window;
        choose(window);
        EXPECT_EQ(Runtime::liveObjects("FakeGraphicsDevice"), 1U);
        EXPECT_EQ(Runtime::liveObjects("FakeCommandQueue"), 1U);
    }
    EXPECT_EQ(Runtime::liveObjects("FakeGraphicsDevice"), 0U);
    EXPECT_EQ(Runtime::liveObjects("FakeCommandQueue"), 0U);
}

TEST_F(GraphicsDeviceTest, IsLeftToTheSystemWhereThereIsNoChoice) {
    QQuickWindow window;
    const qsizetype before = window.children().size();
    for (const std::vector<bool>& devices : {std::vector<bool>{}, {true}, {false}, {false, false}}) {
        FakeMac::settings().graphicsDevices = devices;
        choose(window);
    }
    FakeMac::settings().graphicsDevices = {false, true};
    FakeMac::settings().makesCommandQueues = false;
    choose(window);
    EXPECT_TRUE(window.graphicsDevice().isNull());
    EXPECT_THAT(FakeMac::journal(), IsEmpty());
    EXPECT_EQ(window.children().size(), before);
}

} // namespace Fenwhirl
