#include "Fenwhirl/Updates/UpdateVersion.h"

#include <QString>

#include <gtest/gtest.h>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

TEST(UpdateVersion, ComparesPieceByPieceAsNumbers) {
    EXPECT_TRUE(isNewer(u"1.10", u"1.9"));
    EXPECT_FALSE(isNewer(u"1.9", u"1.10"));
    EXPECT_TRUE(isNewer(u"2", u"1.9.9"));
    EXPECT_TRUE(isNewer(u"1.0.1", u"1.0"));
    EXPECT_TRUE(isNewer(u"1.4.2", u"1.4.1"));
    EXPECT_FALSE(isNewer(u"1.4.1", u"1.4.1"));
}

TEST(UpdateVersion, TakesMissingPiecesForZero) {
    EXPECT_FALSE(isNewer(u"2.0", u"2"));
    EXPECT_FALSE(isNewer(u"2", u"2.0"));
    EXPECT_FALSE(isNewer(u"1.2", u"1.2.0"));
    EXPECT_FALSE(isNewer(u"", u"0"));
    EXPECT_FALSE(isNewer(u"", u""));
    EXPECT_TRUE(isNewer(u"0.1", u""));
}

TEST(UpdateVersion, DropsEmptyPieces) {
    EXPECT_FALSE(isNewer(u"1..2", u"1.2"));
    EXPECT_FALSE(isNewer(u"1.2", u"1..2"));
    EXPECT_FALSE(isNewer(u".1.2.", u"1.2"));
    EXPECT_FALSE(isNewer(u"...", u"0"));
}

TEST(UpdateVersion, TakesPiecesThatAreNoNumbersForZero) {
    EXPECT_FALSE(isNewer(u"1.2.3-beta", u"1.2.3"));
    EXPECT_TRUE(isNewer(u"1.2.3", u"1.2.3-beta"));
    EXPECT_FALSE(isNewer(u"1.2.3-beta", u"1.2"));
    for (const char16_t* piece : {u"v2", u" 2", u"2 ", u"2\n", u"0x2", u"2e1", u"٣", u"２", u"+", u"-",
                                  u"+-2", u"--2", u"%2", u"9999999999999999999999", u"9223372036854775808"}) {
        EXPECT_FALSE(isNewer(QStringView(piece), u"0")) << QString::fromUtf16(piece).toStdString();
        EXPECT_FALSE(isNewer(u"0", QStringView(piece))) << QString::fromUtf16(piece).toStdString();
    }
}

TEST(UpdateVersion, ReadsSignsAndTheWholeRange) {
    EXPECT_TRUE(isNewer(u"+2", u"1"));
    EXPECT_TRUE(isNewer(u"0", u"-1"));
    EXPECT_FALSE(isNewer(u"-1", u""));
    EXPECT_TRUE(isNewer(u"9223372036854775807", u"9223372036854775806"));
    EXPECT_TRUE(isNewer(u"0", u"-9223372036854775808"));
    EXPECT_TRUE(isNewer(QString(1000, u'0') + u'7', u"6"_s));
}

} // namespace Fenwhirl
