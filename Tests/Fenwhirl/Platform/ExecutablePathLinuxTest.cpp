#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

TEST(ExecutablePath, TheLibraryAndTheGuardLieBesideTheProgramsFolder) {
    EXPECT_EQ(applicationLibraryPath("/opt/fenwhirl/bin/Fenwhirl"),
              "/opt/fenwhirl/lib/fenwhirl/libFenwhirlApp.so");
    EXPECT_EQ(guardPath("/opt/fenwhirl/bin/Fenwhirl"), "/opt/fenwhirl/lib/fenwhirl/fenwhirl-guard");
}

} // namespace Fenwhirl
