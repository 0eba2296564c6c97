#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace Fenwhirl {

TEST(ExecutablePath, IsThisProgramWithoutLinks) {
    const auto path = executablePath();
    ASSERT_TRUE(path);
    EXPECT_EQ(std::filesystem::path(*path).filename(), "ExecutablePathTest");
    EXPECT_EQ(std::filesystem::canonical(*path), *path);
}

TEST(ExecutablePath, WhatIsInstalledWithAProgramIsFoundFromTheFolderAboveItsOwn) {
    EXPECT_EQ(installedBeside("/opt/fenwhirl/bin/Fenwhirl", "lib/fenwhirl/x"),
              "/opt/fenwhirl/lib/fenwhirl/x");
    EXPECT_EQ(installedBeside("/Applications/Fenwhirl.app/Contents/MacOS/Fenwhirl", "Frameworks/x.dylib"),
              "/Applications/Fenwhirl.app/Contents/Frameworks/x.dylib");
}

TEST(ExecutablePath, AProgramAtTheTopStaysAbsolute) {
    EXPECT_EQ(installedBeside("/Fenwhirl", "lib/x"), "/lib/x");
    EXPECT_EQ(installedBeside("/bin/Fenwhirl", "lib/x"), "/lib/x");
}

} // namespace Fenwhirl
