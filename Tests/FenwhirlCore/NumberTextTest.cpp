#include "FenwhirlCore/NumberText.h"

#include "Support/TestLocale.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace Fenwhirl {

namespace {

using NumberText::exactWhole;
using NumberText::saturatedWhole;
using NumberText::twoDecimals;
using NumberText::wholeOrQuestionMark;

constexpr double infiniteNumber = std::numeric_limits<double>::infinity();

std::string byTheCLibrary(double value) {
    const InCLocale plain;
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.2f", value);
    return text.data();
}

TEST(TwoDecimals, MatchTheReportFormat) {
    EXPECT_EQ(twoDecimals(2000), "2000.00");
    EXPECT_EQ(twoDecimals(47.5), "47.50");
    EXPECT_EQ(twoDecimals(0), "0.00");
    EXPECT_EQ(twoDecimals(-1.25), "-1.25");
    EXPECT_EQ(twoDecimals(0.999), "1.00");
    EXPECT_EQ(twoDecimals(4294967295.0), "4294967295.00");
}

TEST(TwoDecimals, TiesGoToTheEvenDigit) {
    EXPECT_EQ(twoDecimals(0.125), "0.12");
    EXPECT_EQ(twoDecimals(0.375), "0.38");
    EXPECT_EQ(twoDecimals(0.625), "0.62");
    EXPECT_EQ(twoDecimals(-0.875), "-0.88");
}

TEST(TwoDecimals, NonFiniteValuesAreWrittenAsWords) {
    EXPECT_EQ(twoDecimals(std::nan("")), "nan");
    EXPECT_EQ(twoDecimals(-std::nan("")), "nan");
    EXPECT_EQ(twoDecimals(infiniteNumber), "inf");
    EXPECT_EQ(twoDecimals(-infiniteNumber), "-inf");
}

TEST(TwoDecimals, AgreeWithTheCLibraryForEveryFixedPointValue) {
    for (int raw = -32768; raw <= 32767; ++raw) {
        ASSERT_EQ(twoDecimals(raw / 256.0), byTheCLibrary(raw / 256.0)) << raw;
    }
}

TEST(TwoDecimals, AgreeWithTheCLibraryForRandomBitPatterns) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 20000; ++round) {
        const std::uint64_t bits = random();
        const auto wide = std::bit_cast<double>(bits);
        const auto single = static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
        const double ordinary = std::ldexp(static_cast<double>(bits >> 11U), -40 - round % 40);
        for (const double value : {wide, single, ordinary, -ordinary}) {
            if (std::isnan(value)) {
                continue;
            }
            ASSERT_EQ(twoDecimals(value), byTheCLibrary(value)) << std::hex << bits;
        }
    }
}

TEST(TwoDecimals, AgreeWithTheCLibraryAtTheEnds) {
    using Limits = std::numeric_limits<double>;
    for (const double value : {Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(), -0.0,
                               -0.001, 0x1p52, 0x1p53, 0x1p52 - 0.5, 0x1p63, 0x1p64, 0.005, 0.015, 999.995}) {
        EXPECT_EQ(twoDecimals(value), byTheCLibrary(value));
    }
}

TEST(WholeNumbers, AreTruncatedTowardZero) {
    EXPECT_EQ(exactWhole(2.9), 2);
    EXPECT_EQ(exactWhole(-2.9), -2);
    EXPECT_EQ(exactWhole(-0.5), 0);
    EXPECT_EQ(exactWhole(-9223372036854775808.0), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(exactWhole(9223372036854774784.0), std::numeric_limits<std::int64_t>::max() - 1023);
}

TEST(WholeNumbers, OutsideTheRangeAreAbsentOrSaturated) {
    EXPECT_EQ(exactWhole(9223372036854775808.0), std::nullopt);
    EXPECT_EQ(exactWhole(-9223372036854777856.0), std::nullopt);
    EXPECT_EQ(saturatedWhole(1e300), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(saturatedWhole(-1e300), std::numeric_limits<std::int64_t>::min());
    for (const double value : {std::nan(""), infiniteNumber, -infiniteNumber}) {
        EXPECT_EQ(exactWhole(value), std::nullopt);
        EXPECT_EQ(saturatedWhole(value), std::nullopt);
    }
}

TEST(WholeNumbers, MissingOnesAreShownAsAQuestionMark) {
    EXPECT_EQ(wholeOrQuestionMark(2640.7), "2640");
    EXPECT_EQ(wholeOrQuestionMark(std::nullopt), "?");
    EXPECT_EQ(wholeOrQuestionMark(std::nan("")), "?");
    EXPECT_EQ(wholeOrQuestionMark(infiniteNumber), "?");
}

} // namespace

} // namespace Fenwhirl
