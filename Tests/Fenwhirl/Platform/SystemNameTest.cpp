#include "Fenwhirl/Platform/SystemName.h"

#include "Fenwhirl/Platform/SystemNameLinux.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

TEST(SystemName, NameThatAPersonGaveComesFirst) {
    EXPECT_EQ(computerNameFrom("ICON_NAME=computer\nPRETTY_HOSTNAME=\"Atelier de Zoé\"\n", "atelier"),
              QStringLiteral("Atelier de Zoé"));
    EXPECT_EQ(computerNameFrom("PRETTY_HOSTNAME=Atelier", "x"), QStringLiteral("Atelier"));
    EXPECT_EQ(computerNameFrom("PRETTY_HOSTNAME='Zoé \\\"Z\\\"'", "x"), QStringLiteral("Zoé \"Z\""));
    EXPECT_EQ(computerNameFrom("#PRETTY_HOSTNAME=no\nPRETTY_HOSTNAME=\"\"", "host"), QStringLiteral("host"));
}

TEST(SystemName, ElseTheHostsNameWithoutItsDomain) {
    EXPECT_EQ(computerNameFrom("", "macbook.home.example"), QStringLiteral("macbook"));
    EXPECT_EQ(computerNameFrom("", "macbook"), QStringLiteral("macbook"));
}

TEST(SystemName, IsEmptyWhenNobodyNamedTheComputer) {
    for (const char* host : {"", "localhost", "localhost.localdomain", "(none)"}) {
        EXPECT_TRUE(computerNameFrom("", host).isEmpty()) << host;
    }
}

TEST(SystemName, IsTheNameOfThisComputer) {
    const QString name = computerName();
    EXPECT_FALSE(name.contains(u'\n'));
}

} // namespace Fenwhirl
