#include "Fenwhirl/Platform/Administrator.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

TEST(Administrator, TheScriptIsTheCommandBetweenTwoFixedPieces) {
    EXPECT_EQ(administratorScript("rm -f '/Library/PrivilegedHelperTools/FenwhirlHelper'"),
              "do shell script \"rm -f '/Library/PrivilegedHelperTools/FenwhirlHelper'\" with administrator "
              "privileges");
    EXPECT_EQ(administratorScript(""), "do shell script \"\" with administrator privileges");
}

TEST(Administrator, TheScriptToolIsGivenTheScriptAsOneArgument) {
    const std::vector<std::string> expected = {"/usr/bin/osascript", "-e",
                                               "do shell script \"id -u\" with administrator privileges"};
    EXPECT_EQ(scriptedAdministratorInvocation("id -u"), expected);
}

} // namespace Fenwhirl
