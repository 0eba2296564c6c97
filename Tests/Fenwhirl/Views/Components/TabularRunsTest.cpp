#include "Fenwhirl/Views/Components/TabularRuns.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

TEST(TabularRuns, EveryDigitIsAPieceAndWhatStandsBetweenIsOne) {
    EXPECT_EQ(tabularRuns(QStringLiteral("63\u00a0°C")),
              (QStringList{QStringLiteral("6"), QStringLiteral("3"), QStringLiteral("\u00a0°C")}));
    EXPECT_EQ(tabularRuns(QStringLiteral("à 9 et 10 h")).size(), 6);
}

TEST(TabularRuns, JoinedThePiecesAreTheText) {
    for (const QString& text :
         {QString(), QStringLiteral("abc"), QStringLiteral("2\u202f694 tr/min"), QStringLiteral("1😀2")}) {
        EXPECT_EQ(tabularRuns(text).join(QString()), text);
    }
}

TEST(TabularRuns, OnlyASCIIDigitsGetCells) {
    EXPECT_EQ(tabularRuns(QStringLiteral("\u0661\u0662")).size(), 1);
}

} // namespace

} // namespace Fenwhirl
