#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

TEST(ExecutablePath, TheLibraryIsAFrameworkOfTheBundleAndTheGuardAHelper) {
    EXPECT_EQ(applicationLibraryPath("/Applications/Fenwhirl.app/Contents/MacOS/Fenwhirl"),
              "/Applications/Fenwhirl.app/Contents/Frameworks/libFenwhirlApp.dylib");
    EXPECT_EQ(guardPath("/Applications/Fenwhirl.app/Contents/MacOS/Fenwhirl"),
              "/Applications/Fenwhirl.app/Contents/Helpers/fenwhirl-guard");
}

} // namespace Fenwhirl
