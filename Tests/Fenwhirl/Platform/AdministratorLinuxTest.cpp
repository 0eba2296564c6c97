#include "Fenwhirl/Platform/AdministratorLinux.h"

#include "Fenwhirl/Platform/Administrator.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Fenwhirl {

TEST(Administrator, RootNeedsNobodysConsent) {
    const std::vector<std::string> expected = {"/bin/sh", "-c", "id -u"};
    EXPECT_EQ(administratorInvocation("id -u", true), expected);
}

TEST(Administrator, OthersAreAskedByTheSystem) {
    const std::vector<std::string> expected = {"/usr/bin/pkexec", "/bin/sh", "-c", "id -u"};
    EXPECT_EQ(administratorInvocation("id -u", false), expected);
}

TEST(Administrator, TheProgramOfAPackageAsksThroughThePackagesOwn) {
    const TemporaryFolder folder;
    const std::string activator = folder.path("activate");
    const std::vector<std::string> plain = {"/usr/bin/pkexec", "/bin/sh", "-c", "id -u"};
    EXPECT_EQ(administratorInvocation("id -u", false, PackagedAdministrator::program, activator), plain)
        << "it is not there";
    folder.write("activate", "#!/bin/sh\n");
    ASSERT_EQ(chmod(activator.c_str(), 0755), 0);
    const std::vector<std::string> activation = {"/usr/bin/pkexec", activator, "activate", "id -u"};
    EXPECT_EQ(administratorInvocation("id -u", false, PackagedAdministrator::program, activator), activation);
    const std::vector<std::string> removal = {"/usr/bin/pkexec", activator, "deactivate", "rm -f 'x'"};
    EXPECT_EQ(administratorInvocation("rm -f 'x'", false, PackagedAdministrator::program, activator),
              removal);
    EXPECT_EQ(administratorInvocation("id -u", false, "/home/me/Fenwhirl", activator), plain);
    EXPECT_EQ(administratorInvocation("id -u", true, PackagedAdministrator::program, activator).front(),
              "/bin/sh");
}

TEST(Administrator, SuccessIsStatusZero) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "asks for a password when not run by root";
    }
    const TemporaryFolder folder;
    EXPECT_TRUE(runAsAdministrator("echo done > '" + folder.path("file") + "'"));
    EXPECT_EQ(folder.read("file"), "done\n");
    EXPECT_FALSE(runAsAdministrator("exit 1"));
    EXPECT_FALSE(runAsAdministrator("kill -9 $$"));
}

} // namespace Fenwhirl
