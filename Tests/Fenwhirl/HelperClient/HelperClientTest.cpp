#include "Fenwhirl/HelperClient/HelperClient.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace Fenwhirl {

TEST(HelperClient, NamesTheOneHelperOfThisComputer) {
    EXPECT_EQ(HelperClient::helperPath, "/Library/PrivilegedHelperTools/FenwhirlHelper");
    EXPECT_EQ(HelperClient::expectedVersion, "3");
}

TEST(HelperClient, TheInstallCommandIsExactlyThis) {
#ifdef __APPLE__
    constexpr std::string_view expected =
        "mkdir -p /Library/PrivilegedHelperTools && cp '/opt/Fenwhirl et compagnie/bin/Fenwhirl' "
        "'/Library/PrivilegedHelperTools/FenwhirlHelper' && chown root:wheel "
        "'/Library/PrivilegedHelperTools/FenwhirlHelper' && chmod 4755 "
        "'/Library/PrivilegedHelperTools/FenwhirlHelper'";
#else
    constexpr std::string_view expected =
        "umask 022 && mkdir -p /Library/PrivilegedHelperTools && "
        "rm -f '/Library/PrivilegedHelperTools/FenwhirlHelper.new' && "
        "cp '/opt/Fenwhirl et compagnie/bin/Fenwhirl' '/Library/PrivilegedHelperTools/FenwhirlHelper.new' && "
        "chown root:root '/Library/PrivilegedHelperTools/FenwhirlHelper.new' && "
        "chmod 4755 '/Library/PrivilegedHelperTools/FenwhirlHelper.new' && "
        "mv -fT '/Library/PrivilegedHelperTools/FenwhirlHelper.new' "
        "'/Library/PrivilegedHelperTools/FenwhirlHelper' || "
        "{ rm -f '/Library/PrivilegedHelperTools/FenwhirlHelper.new'; exit 1; }";
#endif
    EXPECT_EQ(HelperClient::installCommand("/opt/Fenwhirl et compagnie/bin/Fenwhirl"), expected);
}

TEST(HelperClient, WithoutAHelperEverythingSaysSo) {
    if (access("/Library/PrivilegedHelperTools/FenwhirlHelper", F_OK) == 0) {
        GTEST_SKIP() << "this computer has a helper";
    }
    EXPECT_FALSE(HelperClient::isInstalled());
    EXPECT_EQ(HelperClient::installedVersion(), std::nullopt);
    EXPECT_FALSE(HelperClient::run({"auto"}));
    EXPECT_EQ(HelperClient::output({"test"}), "Impossible de lancer l'assistant.");
}

} // namespace Fenwhirl
