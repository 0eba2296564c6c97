#include "Fenwhirl/Localization/DrawnText.h"

#include "Fenwhirl/Localization/FrenchTexts.h"
#include "Fenwhirl/Localization/Localizer.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

TEST(DrawnText, KeepsANumberWithItsUnit) {
    EXPECT_EQ(withNoBreakSpaces(u"La protection à 92 °C ne change pas."_s),
              u"La protection à 92\u00a0°C ne change pas."_s);
    EXPECT_EQ(withNoBreakSpaces(u"Blender (37 %)"_s), u"Blender (37\u00a0%)"_s);
    EXPECT_EQ(withNoBreakSpaces(u"Vitesse demandée : 2400 tr/min"_s),
              u"Vitesse demandée\u00a0: 2400\u00a0tr/min"_s);
    EXPECT_EQ(withNoBreakSpaces(u"Заданная скорость: 2400 об/мин"_s),
              u"Заданная скорость: 2400\u00a0об/мин"_s);
}

TEST(DrawnText, KeepsANumberWithWhatItCounts) {
    EXPECT_EQ(withNoBreakSpaces(u"höchstens alle 5 Minuten eine"_s), u"höchstens alle 5\u00a0Minuten eine"_s);
    EXPECT_EQ(withNoBreakSpaces(u"(6 secondes)"_s), u"(6\u00a0secondes)"_s);
    EXPECT_EQ(withNoBreakSpaces(u"раза в 5 минут."_s), u"раза в 5\u00a0минут."_s);
}

// Neither the tables nor the inserted values may separate a number from what follows it.
TEST(DrawnText, LeavesNoNumberAloneInAnyLanguage) {
    for (const AppLanguage language : allAppLanguages) {
        Localizer::setLanguage(language);
        for (const std::u16string_view french : frenchTexts) {
            const QString shown = localized(QStringView(french).toString(), {u"2160"_s, u"5\u202f999"_s});
            const QString drawn = drawnText(shown);
            ASSERT_EQ(drawn.size(), shown.size());
            for (qsizetype at = 1; at + 1 < drawn.size(); ++at) {
                const bool parted = drawn[at] == u' ' && drawn[at - 1].isDigit();
                EXPECT_FALSE(parted && (drawn[at + 1].isLetter() || drawn[at + 1] == u'°'))
                    << rawValue(language) << ": " << drawn.toStdString();
            }
        }
    }
    Localizer::setLanguage(AppLanguage::automatic);
}

TEST(DrawnText, KeepsFrenchSignsWithTheirWords) {
    EXPECT_EQ(withNoBreakSpaces(u"Fermer Mail ?"_s), u"Fermer Mail\u00a0?"_s);
    EXPECT_EQ(withNoBreakSpaces(u"Activé : vrai ! Ou ; non ?"_s),
              u"Activé\u00a0: vrai\u00a0! Ou\u00a0; non\u00a0?"_s);
    EXPECT_EQ(withNoBreakSpaces(u"« Automatique » suit"_s), u"«\u00a0Automatique\u00a0» suit"_s);
}

TEST(DrawnText, LetsNoLineBeginWithADashOrDots) {
    EXPECT_EQ(withNoBreakSpaces(u"«Автоматически» — на языке"_s), u"«Автоматически»\u00a0— на языке"_s);
    EXPECT_EQ(withNoBreakSpaces(u"Wird erstellt …"_s), u"Wird erstellt\u00a0…"_s);
}

TEST(DrawnText, LeavesNoShortWordAloneOnTheLastLineOfALongText) {
    EXPECT_EQ(withNoBreakSpaces(u"Choisis à partir de quelle température le Mac est chaud."_s),
              u"Choisis à partir de quelle température le Mac est\u00a0chaud."_s);
    const QString kept = withNoBreakSpaces(u"Prati temperaturu tvog Mac-a da bi ostao hladan i tih."_s);
    EXPECT_EQ(withNoBreakSpaces(kept), kept) << "once is enough";
    // Short texts and long words wrap where they must.
    EXPECT_EQ(withNoBreakSpaces(u"Le Mac est très chaud"_s), u"Le Mac est très chaud"_s);
    const QString longWord = u"eins zwei drei vier fünf sechs sieben acht Temperaturüberwachung"_s;
    EXPECT_EQ(withNoBreakSpaces(longWord), longWord);
}

TEST(DrawnText, HasTypographicApostrophes) {
    EXPECT_EQ(drawnText(u"L'activation a été annulée ou a échoué."_s),
              u"L’activation a été annulée ou a échoué."_s);
    EXPECT_EQ(drawnText(u"Seuil d'alerte : 88 °C"_s), u"Seuil d’alerte\u00a0: 88\u00a0°C"_s);
    for (const QString& text :
         {u""_s, u"'"_s, u"a'"_s, u"'a"_s, u"'Safari'"_s, u"5'3"_s, u"a ' b"_s, u"a''b"_s}) {
        EXPECT_EQ(withApostrophes(text), text) << text.toStdString();
    }
}

TEST(DrawnText, ChangesNothingElse) {
    for (const QString& text : {u""_s, u" "_s, u"%"_s, u" %"_s, u"% "_s, u"« "_s, u"Disk 2, 3: yes?"_s,
                                u"a\n: b"_s, u"日本 語"_s, u"already\u00a0: so"_s, u"3 "_s, u" 3"_s}) {
        EXPECT_EQ(drawnText(text), text) << text.toStdString();
    }
    const QString loneSurrogate = QString(QChar(0xD83D)) + u" : "_s;
    EXPECT_EQ(drawnText(loneSurrogate).size(), loneSurrogate.size());
}

} // namespace Fenwhirl
