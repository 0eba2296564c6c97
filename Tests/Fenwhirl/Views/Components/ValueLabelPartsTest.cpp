#include "Fenwhirl/Views/Components/ValueLabelParts.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

void expectWords(const char16_t* text, const char16_t* name, const char16_t* value, const char16_t* unit) {
    const WordsAroundValue words = wordsAroundValue(QString::fromUtf16(text));
    EXPECT_EQ(words.name, QString::fromUtf16(name));
    EXPECT_EQ(words.value, QString::fromUtf16(value));
    EXPECT_EQ(words.unit, QString::fromUtf16(unit));
}

TEST(ValueLabelParts, StandBeforeAndBehindTheNumber) {
    expectWords(u"Vitesse demandée : 3 060 tr/min", u"Vitesse demandée", u"3 060 tr/min", u"tr/min");
    expectWords(u"Target speed: 3,060 rpm", u"Target speed", u"3,060 rpm", u"rpm");
    expectWords(u"La vitesse augmente à partir de 50 °C", u"La vitesse augmente à partir de", u"50 °C",
                u"°C");
    expectWords(u"Ab 50 °C wird die Drehzahl erhöht", u"Ab", u"50 °C wird die Drehzahl erhöht",
                u"°C wird die Drehzahl erhöht");
    expectWords(u"Ziel: 3.060 U/min", u"Ziel", u"3.060 U/min", u"U/min");
}

TEST(ValueLabelParts, WithoutANumberAllIsName) {
    expectWords(u" Luminosité ", u"Luminosité", u"", u"");
    expectWords(u"", u"", u"", u"");
}

} // namespace

} // namespace Fenwhirl
