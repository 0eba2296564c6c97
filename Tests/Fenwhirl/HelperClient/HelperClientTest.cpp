#include "Fenwhirl/HelperClient/HelperClient.h"

#include "Fenwhirl/Platform/Administrator.h"

#include <gtest/gtest.h>
#include <unistd.h>

TEST(HelperClient, NamesTheOneHelperOfThisComputer) {
    EXPECT_EQ(HelperClient::helperPath, "/Library/PrivilegedHelperTools/FenwhirlHelper");
    EXPECT_EQ(HelperClient::expectedVersion, "3");
}

TEST(HelperClient, TheInstallCommandIsExactlyThis) {
    EXPECT_EQ(HelperClient::installCommand("/opt/Fenwhirl et compagnie/bin/Fenwhirl"),
              "mkdir -p /Library/PrivilegedHelperTools && cp '/opt/Fenwhirl et compagnie/bin/Fenwhirl' "
              "'/Library/PrivilegedHelperTools/FenwhirlHelper' && chown root:" +
                  std::string(administratorGroup()) +
                  " '/Library/PrivilegedHelperTools/FenwhirlHelper' && chmod 4755 "
                  "'/Library/PrivilegedHelperTools/FenwhirlHelper'");
}

TEST(HelperClient, WithoutAHelperEverythingSaysSo) {
    if (access("/Library/PrivilegedHelperTools/FenwhirlHelper", F_OK) == 0)
        GTEST_SKIP() << "this computer has a helper";
    EXPECT_FALSE(HelperClient::isInstalled());
    EXPECT_EQ(HelperClient::installedVersion(), std::nullopt);
    EXPECT_FALSE(HelperClient::run({"auto"}));
    EXPECT_EQ(HelperClient::output({"test"}), "Impossible de lancer l'assistant.");
}
