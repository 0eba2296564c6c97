#include "Fenwhirl/Platform/Administrator.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

TEST(Administrator, RootNeedsNobodysConsent) {
    const std::vector<std::string> expected = {"/bin/sh", "-c", "id -u"};
    EXPECT_EQ(administratorInvocation("id -u", true), expected);
}

TEST(Administrator, OthersAreAskedByTheSystem) {
    const std::vector<std::string> expected = {"/usr/bin/pkexec", "/bin/sh", "-c", "id -u"};
    EXPECT_EQ(administratorInvocation("id -u", false), expected);
}

TEST(Administrator, SuccessIsStatusZero) {
    if (geteuid() != 0)
        GTEST_SKIP() << "asks for a password when not run by root";
    const TemporaryFolder folder;
    EXPECT_TRUE(runAsAdministrator("echo done > '" + folder.path("file") + "'"));
    EXPECT_EQ(folder.read("file"), "done\n");
    EXPECT_FALSE(runAsAdministrator("exit 1"));
    EXPECT_FALSE(runAsAdministrator("kill -9 $$"));
}
