#include "Fenwhirl/Localization/Cyrillic.h"

#include <QString>

#include <gtest/gtest.h>
#include <random>

namespace Fenwhirl {

namespace {

QString cyrillic(const char* latin) {
    return Cyrillic::convert(QString::fromUtf8(latin));
}

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace

TEST(Cyrillic, KeepsPlaceholders) {
    EXPECT_EQ(cyrillic("Zatvoriti %@?"), text("Затворити %@?"));
    EXPECT_EQ(cyrillic("Tražena brzina: %@ o/min"), text("Тражена брзина: %@ о/мин"));
    EXPECT_EQ(cyrillic("%@"), text("%@"));
}

TEST(Cyrillic, KeepsPlaceholdersGluedToLetters) {
    EXPECT_EQ(cyrillic("od%@do"), text("од%@до"));
    EXPECT_EQ(cyrillic("%@%@"), text("%@%@"));
    EXPECT_EQ(cyrillic("%@C"), text("%@Ц")) << "glued to a placeholder a kept word is another word";
    EXPECT_EQ(cyrillic("Mac% cpu@ l%j"), text("Мац% цпу@ л%ј"));
}

TEST(Cyrillic, WritesDigraphsAsOneLetterInTheCaseOfTheFirst) {
    EXPECT_EQ(cyrillic("Ljubljana"), text("Љубљана"));
    EXPECT_EQ(cyrillic("NJEGOŠ"), text("ЊЕГОШ"));
    EXPECT_EQ(cyrillic("džep"), text("џеп"));
    EXPECT_EQ(cyrillic("Lj LJ lJ lj"), text("Љ Љ љ љ"));
    EXPECT_EQ(cyrillic("Dž DŽ dŽ dž"), text("Џ Џ џ џ"));
    EXPECT_EQ(cyrillic("d l n"), text("д л н"));
}

TEST(Cyrillic, WritesEachLetterOfTheAlphabet) {
    EXPECT_EQ(cyrillic("abcčćdđefghijklmnoprsštuvzž"), text("абцчћдђефгхијклмнопрсштувзж"));
    EXPECT_EQ(cyrillic("ABCČĆDĐEFGHIJKLMNOPRSŠTUVZŽ"), text("АБЦЧЋДЂЕФГХИЈКЛМНОПРСШТУВЗЖ"));
}

TEST(Cyrillic, TakesDecomposedLettersForTheirComposedForm) {
    EXPECT_EQ(cyrillic("dz\u030Cep"), text("џеп"));
    EXPECT_EQ(cyrillic("S\u030Cuma c\u030Cc\u0301"), text("Шума чћ"));
}

TEST(Cyrillic, KeepsNamesAndUnitsInLatinLetters) {
    for (const char* const word :
         {"Mac", "macOS", "CPU", "GPU", "SSD", "PECI", "Wi-Fi", "°C", "cpu", "MAC"}) {
        EXPECT_EQ(cyrillic(word), text(word));
    }
    EXPECT_EQ(cyrillic("SSD disk, 85 °C, Mac-a"), text("SSD диск, 85 °C, Mac-а"));
}

TEST(Cyrillic, KeepsTheProductNameInAnyLetterCase) {
    for (const char* const word : {"Fenwhirl", "fenwhirl", "FENWHIRL", "fEnWhIrL"}) {
        EXPECT_EQ(cyrillic(word), text(word));
    }
}

TEST(Cyrillic, TransliteratesWordsThatOnlyContainAKeptOne) {
    EXPECT_EQ(cyrillic("Macintosh"), text("Мацинтосх"));
    EXPECT_EQ(cyrillic("ssdovi"), text("ссдови"));
}

TEST(Cyrillic, LeavesLettersWithoutCyrillicFormAlone) {
    EXPECT_EQ(cyrillic("x86"), text("x86"));
    EXPECT_EQ(cyrillic("qwxy QWXY"), text("qwxy QWXY"));
    EXPECT_EQ(cyrillic("ß é İ ı ſ ﬁ"), text("ß é İ ı ſ ﬁ"));
    EXPECT_EQ(cyrillic("日本 Ελλάδα Русский"), text("日本 Ελλάδα Русский"));
}

TEST(Cyrillic, DoesNotTakeLettersWithForeignMarksForSerbianOnes) {
    EXPECT_EQ(cyrillic("a\u0301"), text("a\u0301"));
    EXPECT_EQ(cyrillic("z\u030C\u0301"), text("z\u030C\u0301"));
}

TEST(Cyrillic, EndsWordsAtDigitsAndPunctuation) {
    EXPECT_EQ(cyrillic("l1j n-j d.ž"), text("л1ј н-ј д.ж"));
    EXPECT_EQ(cyrillic("Wi2Fi"), text("Wi2Fi"));
}

TEST(Cyrillic, KeepsLineBreaksAndEmoji) {
    EXPECT_EQ(cyrillic("a\r\nb\nc\t🇷🇸👩‍👩‍👧 d"),
              text("а\r\nб\nc\t🇷🇸👩‍👩‍👧 д"));
}

TEST(Cyrillic, MakesAnEmptyTextOfAnEmptyText) {
    EXPECT_EQ(Cyrillic::convert(QStringView()), QString());
    EXPECT_EQ(cyrillic(""), QString());
}

TEST(Cyrillic, LetsLoneSurrogatesThrough) {
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    const QString lone = high + text("lj") + low + text(" %@ ") + high;
    const QString expected = high + text("љ") + low + text(" %@ ") + high;
    EXPECT_EQ(Cyrillic::convert(lone), expected);
}

TEST(Cyrillic, AcceptsWhatInvalidUtf8Decodes) {
    EXPECT_EQ(cyrillic("nj\xFF\xC3 %@ \xED\xA0\x80"), text("њ\xFF\xC3 %@ \xED\xA0\x80"));
}

TEST(Cyrillic, ConvertsLongTexts) {
    EXPECT_EQ(Cyrillic::convert(QString(100'000, u'a')), QString(100'000, QChar(u'а')));
}

// For any text, a second conversion changes nothing, and no placeholder is lost.
TEST(Cyrillic, HoldsForRandomTexts) {
    const QString pieces = text("lnjdzžšđčćLNJDZŽ%@ CwifmacOSpu.\r\n\u030C\u0301é日");
    std::mt19937 random(20230611); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts in every run
    std::uniform_int_distribution<qsizetype> piece(0, pieces.size() - 1);
    for (int round = 0; round < 20'000; ++round) {
        QString latin;
        for (int i = 0; i < 24; ++i) {
            latin.append(pieces[piece(random)]);
        }
        const QString once = Cyrillic::convert(latin);
        ASSERT_EQ(once.count(text("%@")), latin.count(text("%@"))) << latin.toStdString();
        ASSERT_EQ(Cyrillic::convert(once), once) << latin.toStdString();
    }
}

} // namespace Fenwhirl
