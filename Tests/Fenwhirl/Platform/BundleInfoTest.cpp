#include "Fenwhirl/Platform/BundleInfo.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

TEST(BundleInfo, KnowsNameAndVersionOfTheBuild) {
    EXPECT_EQ(BundleInfo::name(), QStringLiteral("Fenwhirl"));
    EXPECT_EQ(BundleInfo::shortVersion(), QStringLiteral("0.1"));
}

TEST(BundleInfo, HasNoBundleFolderOutsideMacOS) {
    EXPECT_EQ(BundleInfo::path(), QString());
}

} // namespace Fenwhirl
