#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <filesystem>
#include <gtest/gtest.h>

TEST(ExecutablePath, IsThisProgramWithoutLinks) {
    const auto path = executablePath();
    ASSERT_TRUE(path);
    EXPECT_EQ(std::filesystem::path(*path).filename(), "ExecutablePathTest");
    EXPECT_EQ(std::filesystem::canonical(*path), *path);
}

TEST(ExecutablePath, TheLibraryAndTheGuardLieBesideTheProgramsFolder) {
    EXPECT_EQ(applicationLibraryPath("/opt/fenwhirl/bin/Fenwhirl"),
              "/opt/fenwhirl/lib/fenwhirl/libFenwhirlApp.so");
    EXPECT_EQ(guardPath("/opt/fenwhirl/bin/Fenwhirl"), "/opt/fenwhirl/lib/fenwhirl/fenwhirl-guard");
}

TEST(ExecutablePath, AProgramAtTheTopStaysAbsolute) {
    EXPECT_EQ(applicationLibraryPath("/Fenwhirl"), "/lib/fenwhirl/libFenwhirlApp.so");
    EXPECT_EQ(applicationLibraryPath("/bin/Fenwhirl"), "/lib/fenwhirl/libFenwhirlApp.so");
}
