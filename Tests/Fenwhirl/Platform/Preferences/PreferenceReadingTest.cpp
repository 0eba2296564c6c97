#include "Fenwhirl/Platform/Preferences/PreferenceReading.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

PreferenceValue text(const char* words) {
    return QString::fromUtf8(words);
}

} // namespace

TEST(PreferenceReading, WhatIsAbsentStaysAbsent) {
    EXPECT_EQ(readAsNumber(std::nullopt), std::nullopt);
    EXPECT_EQ(readAsBoolean(std::nullopt), std::nullopt);
    EXPECT_EQ(storedAs<QString>(std::nullopt), std::nullopt);
}

TEST(PreferenceReading, NumbersAreThemselves) {
    EXPECT_EQ(readAsNumber(PreferenceValue(77.5)), 77.5);
    EXPECT_EQ(readAsNumber(PreferenceValue(-1e300)), -1e300);
    EXPECT_TRUE(std::isnan(*readAsNumber(PreferenceValue(std::numeric_limits<double>::quiet_NaN()))));
}

TEST(PreferenceReading, TextsAreTheNumberThatTheySpell) {
    EXPECT_EQ(readAsNumber(text("80")), 80);
    EXPECT_EQ(readAsNumber(text(" -80.25 ")), -80.25);
    EXPECT_EQ(readAsNumber(text("1e2")), 100);
    for (const char* words : {"", "chaud", "80,5", "80 °C", "nan", "inf", "1e999", "٨٠"}) {
        EXPECT_EQ(readAsNumber(text(words)), 0) << words;
    }
}

TEST(PreferenceReading, YesAndNoAreOneAndZero) {
    EXPECT_EQ(readAsNumber(PreferenceValue(true)), 1);
    EXPECT_EQ(readAsNumber(PreferenceValue(false)), 0);
    EXPECT_EQ(readAsNumber(PreferenceValue(QByteArray("80"))), 0);
}

TEST(PreferenceReading, NumbersButZeroAreYes) {
    EXPECT_EQ(readAsBoolean(PreferenceValue(true)), true);
    EXPECT_EQ(readAsBoolean(PreferenceValue(false)), false);
    EXPECT_EQ(readAsBoolean(PreferenceValue(1.0)), true);
    EXPECT_EQ(readAsBoolean(PreferenceValue(-0.5)), true);
    EXPECT_EQ(readAsBoolean(PreferenceValue(0.0)), false);
    EXPECT_EQ(readAsBoolean(PreferenceValue(QByteArray("1"))), false);
}

TEST(PreferenceReading, TextsSayYesInThreeWords) {
    for (const char* words : {"YES", "yes", "true", "True", "1", " 1 "}) {
        EXPECT_EQ(readAsBoolean(text(words)), true) << words;
    }
    for (const char* words : {"", "NO", "false", "0", "2", "oui", "yes!"}) {
        EXPECT_EQ(readAsBoolean(text(words)), false) << words;
    }
}

} // namespace Fenwhirl
