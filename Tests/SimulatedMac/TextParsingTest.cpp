#include "SimulatedMac/TextParsing.h"

#include "SimulatedMac/FourCC.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace simulated {
namespace {

TEST(TextParsing, NumbersAreTheWholeTextOrNothing) {
    EXPECT_EQ(parseNumber("93.5"), 93.5);
    EXPECT_EQ(parseNumber("-4"), -4.0);
    EXPECT_EQ(parseNumber("1e3"), 1000.0);
    for (const char* text : {"", " 1", "1 ", "12x", "1,5", "nan", "inf", "1e999", "0x10", "."}) {
        EXPECT_FALSE(parseNumber(text)) << text;
    }
}

TEST(TextParsing, WholeNumbersHaveNoSign) {
    EXPECT_EQ(parseWhole("0"), 0U);
    EXPECT_EQ(parseWhole("18446744073709551615"), 18446744073709551615U);
    for (const char* text : {"", "-1", "+1", "1.0", "18446744073709551616"}) {
        EXPECT_FALSE(parseWhole(text)) << text;
    }
}

TEST(TextParsing, HexTakesAnOptionalPrefix) {
    EXPECT_EQ(parseHex("86"), 0x86U);
    EXPECT_EQ(parseHex("0xE00002C1"), 0xE00002C1U);
    EXPECT_FALSE(parseHex("0x"));
    EXPECT_FALSE(parseHex("1E00002C1"));
    EXPECT_FALSE(parseHex("G"));
}

TEST(TextParsing, HexBytesComeInPairsUpToTheCapacity) {
    const std::vector<std::uint8_t> expected{0x2E, 0xe0};
    EXPECT_EQ(parseHexBytes("2EE0", 2), expected);
    EXPECT_EQ(parseHexBytes("", 2), std::vector<std::uint8_t>{});
    EXPECT_FALSE(parseHexBytes("2EE", 2));
    EXPECT_FALSE(parseHexBytes("2EE0FF", 2));
    EXPECT_FALSE(parseHexBytes("2 ", 2));
    EXPECT_FALSE(parseHexBytes("-1", 2));
}

TEST(TextParsing, HexTextIsUpperCaseWithoutGaps) {
    const std::array<std::uint8_t, 3> bytes{0x00, 0xab, 0x5F};
    EXPECT_EQ(hexText(bytes), "00AB5F");
}

TEST(TextParsing, WordsAreSeparatedByAnyNumberOfBlanks) {
    const auto words = splitWords("  set\tTC0P   93.5 ");
    ASSERT_EQ(words.size(), 3U);
    EXPECT_EQ(words[1], "TC0P");
    EXPECT_TRUE(splitWords(" \t").empty());
}

TEST(TextParsing, FieldsKeepEmptyParts) {
    const auto fields = splitFields("a,,b,", ',');
    ASSERT_EQ(fields.size(), 4U);
    EXPECT_EQ(fields[1], "");
    EXPECT_EQ(fields[3], "");
}

TEST(TextParsing, FixedTextHasAPointAndTheAskedForDecimals) {
    EXPECT_EQ(fixedText(12.345, 2), "12.35");
    EXPECT_EQ(fixedText(-0.5, 1), "-0.5");
    EXPECT_EQ(fixedText(1e300, 0).size(), 301U);
}

TEST(FourCC, ShortNamesAreFilledUpWithBlanks) {
    EXPECT_EQ(parseFourCC("FNum"), 0x464E756DU);
    EXPECT_EQ(parseFourCC("FS!"), fourCC("FS! "));
    EXPECT_EQ(parseFourCC("0xF0F1F2F3"), 0xF0F1F2F3U);
    EXPECT_FALSE(parseFourCC(""));
    EXPECT_FALSE(parseFourCC("F10Ac"));
    EXPECT_FALSE(parseFourCC("é"));
}

TEST(FourCC, TextShowsUnprintableBytesAsQuestionMarks) {
    EXPECT_EQ(fourCCText(fourCC("flt ")), "flt ");
    EXPECT_EQ(fourCCText(0x7569'3800), "ui8?");
}

TEST(FourCC, FanKeysCarryTheIndexAsADigit) {
    EXPECT_EQ(fanKey(0, "Tg"), fourCC("F0Tg"));
    EXPECT_EQ(fanKey(9, "md"), fourCC("F9md"));
}

} // namespace
} // namespace simulated
