#include "Fenwhirl/Localization/DisplayText.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

TEST(DisplayText, LeavesOrdinaryTextAlone) {
    for (const QString& text : {u""_s, u"Safari"_s, u"Café du Monde"_s, u"Ћирилица"_s, u"日本語"_s,
                                u"👩\u200d💻"_s, u"می\u200cخواهم"_s, u"a\u00a0b"_s, u"<b>&amp;%1%@"_s}) {
        EXPECT_EQ(displayText(text), text);
    }
}

TEST(DisplayText, ReplacesWhatMovesOrHidesOtherText) {
    EXPECT_EQ(displayText(u"a\nb\tc\u0000d\u0007\u001b[0m"_s), u"a\ufffdb\ufffdc\ufffdd\ufffd\ufffd[0m"_s);
    EXPECT_EQ(displayText(u"a\u007f\u0085\u2028\u2029b"_s), u"a\ufffd\ufffd\ufffd\ufffdb"_s);
    EXPECT_EQ(displayText(u"\u202agpj.\u202e\u2066x\u2069\u200e\u200f\ufeff\u00ad"_s),
              u"\ufffdgpj.\ufffd\ufffdx\ufffd\ufffd\ufffd\ufffd\ufffd"_s);
    EXPECT_EQ(displayText(u"\U000E0041"_s), u"\ufffd"_s) << "an invisible tag letter";
}

TEST(DisplayText, ReplacesHalvesOfCharacters) {
    EXPECT_EQ(displayText(QString(QChar(0xD83D)) + u"x"_s + QChar(0xDE00)), u"\ufffdx\ufffd"_s);
    EXPECT_EQ(displayText(QString(QChar(0xD83D))), u"\ufffd"_s);
}

TEST(DisplayText, CutsLongTextAndSaysSo) {
    EXPECT_EQ(displayText(u"abcde"_s, 5), u"abcde"_s);
    EXPECT_EQ(displayText(u"abcdef"_s, 5), u"abcd…"_s);
    EXPECT_EQ(displayText(u"abc"_s, 1), u"…"_s);
    const QString shown = displayText(QString(100'000, u'x'));
    EXPECT_EQ(shown.size(), displayTextLimit);
    EXPECT_TRUE(shown.endsWith(u'…'));
}

TEST(DisplayText, NeverCutsACharacterInHalf) {
    EXPECT_EQ(displayText(u"ab😀"_s, 4), u"ab😀"_s);
    EXPECT_EQ(displayText(u"ab😀c"_s, 4), u"ab…"_s);
    EXPECT_EQ(displayText(u"ab😀c"_s, 5), u"ab😀c"_s);
}

} // namespace Fenwhirl
