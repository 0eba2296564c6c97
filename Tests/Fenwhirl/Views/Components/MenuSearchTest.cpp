#include "Fenwhirl/Views/Components/MenuSearch.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

const QStringList sensors = {u"Température principale (processeur)"_s,
                             u"Batterie"_s,
                             u"Cœur 1"_s,
                             u"Cœur 10"_s,
                             u"Équilibré"_s,
                             u"Processeur (proximité)"_s,
                             u"Batterie 2"_s};

TEST(MenuSearch, FindsTheNextItemThatBeginsWithALetterAndComesAround) {
    EXPECT_EQ(foundInMenu(sensors, u"b"_s, -1), 1);
    EXPECT_EQ(foundInMenu(sensors, u"b"_s, 1), 6);
    EXPECT_EQ(foundInMenu(sensors, u"b"_s, 6), 1);
    EXPECT_EQ(foundInMenu(sensors, u"bb"_s, 1), 6);
}

TEST(MenuSearch, FindsWhatBeginsWithAllThatWasTyped) {
    EXPECT_EQ(foundInMenu(sensors, u"bat"_s, 1), 1);
    EXPECT_EQ(foundInMenu(sensors, u"batterie 2"_s, 1), 6);
    EXPECT_EQ(foundInMenu(sensors, u"cœur 10"_s, 2), 3);
}

TEST(MenuSearch, FindsAWordInsideWhereNoItemBeginsSo) {
    EXPECT_EQ(foundInMenu(sensors, u"proc"_s, -1), 5);
    EXPECT_EQ(foundInMenu(sensors, u"prox"_s, -1), 5);
    EXPECT_EQ(foundInMenu(sensors, u"princ"_s, -1), 0);
    EXPECT_EQ(foundInMenu(sensors, u"atterie"_s, -1), -1);
}

TEST(MenuSearch, NeedsNeitherCaseNorAccents) {
    EXPECT_EQ(foundInMenu(sensors, u"EQU"_s, -1), 4);
    EXPECT_EQ(foundInMenu(sensors, u"équ"_s, -1), 4);
}

TEST(MenuSearch, FindsNothingInNothing) {
    EXPECT_EQ(foundInMenu({}, u"a"_s, -1), -1);
    EXPECT_EQ(foundInMenu(sensors, {}, 2), -1);
    EXPECT_EQ(foundInMenu(sensors, u"x"_s, 99), -1);
    EXPECT_EQ(foundInMenu({QString()}, u"a"_s, -5), -1);
    EXPECT_EQ(foundInMenu(sensors, u"\u0301"_s, 0), -1);
}

} // namespace

} // namespace Fenwhirl
