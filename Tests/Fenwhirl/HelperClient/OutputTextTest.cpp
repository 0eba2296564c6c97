#include "Fenwhirl/HelperClient/OutputText.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

TEST(OutputText, ValidTextStaysAsItIs) {
    const std::string text = "Écriture acceptée : oui\n\u20AC \U0001F300 fin";
    EXPECT_EQ(repairedUTF8(text), text);
    EXPECT_EQ(repairedUTF8(""), "");
    EXPECT_EQ(repairedUTF8(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

TEST(OutputText, InvalidUTF8IsReplaced) {
    EXPECT_EQ(repairedUTF8("a\xFFz"), "a\uFFFDz");
    EXPECT_EQ(repairedUTF8("\x80"), "\uFFFD");
    EXPECT_EQ(repairedUTF8("\xC3"), "\uFFFD");
    EXPECT_EQ(repairedUTF8("\xC3("), "\uFFFD(");
    EXPECT_EQ(repairedUTF8("\xE2\x82"), "\uFFFD");
    EXPECT_EQ(repairedUTF8("\xF0\x9F\x8C"
                           "x"),
              "\uFFFDx");
    EXPECT_EQ(repairedUTF8("\xC0\xAF"), "\uFFFD\uFFFD");           // overlong
    EXPECT_EQ(repairedUTF8("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD"); // overlong
    EXPECT_EQ(repairedUTF8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD"); // surrogate
    EXPECT_EQ(repairedUTF8("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(repairedUTF8("\xF8\x88\x80\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(repairedUTF8("\xE2\x82\xE2\x82\xAC"), "\uFFFD\u20AC");
}

TEST(OutputText, TrimmingTakesBlanksAndLineEndsFromBothEnds) {
    EXPECT_EQ(trimmed("3\n"), "3");
    EXPECT_EQ(trimmed(" \t\r\n\v\f3 4\r\n\n"), "3 4");
    EXPECT_EQ(trimmed("\u00A0\u2003\u30003\u2028\u0085"), "3");
    EXPECT_EQ(trimmed(" \n "), "");
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("\uFFFD"), "\uFFFD");
}

} // namespace

} // namespace Fenwhirl
