#include "Fenwhirl/Application/SelfCheck/InstallationChecks.h"

#include "Fenwhirl/Platform/Entry/ExecutablePath.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace fs = std::filesystem;

namespace {

using Outcome = CheckResult::Outcome;

class InstallationChecksTest : public testing::Test {
protected:
    TemporaryFolder folder;
    Installation installation;

    InstallationChecksTest() {
        fs::create_directories(folder.path("place/bin"));
        const std::string executable = folder.path("place/bin/Fenwhirl");
        const std::string library = applicationLibraryPath(executable);
        const std::string guard = guardPath(executable);
        for (const std::string& file : {executable, library, guard}) {
            fs::create_directories(fs::path(file).parent_path());
            folder.write(fs::path(file).lexically_relative(folder.path()).string(), "");
        }
        fs::permissions(guard, fs::perms(0755));
        installation = {.executable = executable, .library = library};
    }

    std::vector<Outcome> run() {
        std::vector<Outcome> outcomes;
        for (const SelfCheck& check : installationChecks(installation)) {
            outcomes.push_back(check.run().outcome);
        }
        return outcomes;
    }
};

} // namespace

TEST_F(InstallationChecksTest, EverythingIsWhereItBelongs) {
    EXPECT_EQ(run(), (std::vector{Outcome::pass, Outcome::pass, Outcome::pass}));
}

TEST_F(InstallationChecksTest, ALibraryOfAnotherPlaceIsAFailure) {
    installation.library = folder.write("other.so", "");
    EXPECT_EQ(run(), (std::vector{Outcome::pass, Outcome::fail, Outcome::pass}));
}

TEST_F(InstallationChecksTest, ALibraryByAnotherNameOfTheSameFileIsNone) {
    fs::create_directory_symlink(folder.path("place"), folder.path("link"));
    installation.library = applicationLibraryPath(folder.path("link/bin/Fenwhirl"));
    EXPECT_EQ(run(), (std::vector{Outcome::pass, Outcome::pass, Outcome::pass}));
}

TEST_F(InstallationChecksTest, AGuardThatCannotBeStartedIsAFailure) {
    fs::permissions(guardPath(*installation.executable), fs::perms(0644));
    EXPECT_EQ(run(), (std::vector{Outcome::pass, Outcome::pass, Outcome::fail}));
}

TEST_F(InstallationChecksTest, WhatTheSystemDoesNotTellIsAFailure) {
    installation = {};
    EXPECT_EQ(run(), (std::vector{Outcome::fail, Outcome::fail, Outcome::fail}));
}

TEST(Installation, ThisProcessKnowsItsFiles) {
    const Installation present = Installation::present();
    EXPECT_TRUE(present.executable);
    EXPECT_TRUE(present.library);
}

} // namespace Fenwhirl
