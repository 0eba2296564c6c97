#include "Fenwhirl/Localization/SensorLabel.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "FenwhirlCore/SensorNames.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class SensorLabels : public testing::Test {
protected:
    void TearDown() override { Localizer::setLanguage(AppLanguage::automatic); }

    static QString in(AppLanguage language, const char* key) {
        Localizer::setLanguage(language);
        return SensorLabel::name(QString::fromUtf8(key));
    }
};

} // namespace

TEST_F(SensorLabels, AreTheFrenchNamesInFrench) {
    for (const char* const key : {"TC0P", "TC1C", "Tp0D", "Te05", "Tg0f", "TZ9X", "Tb", "", "é"}) {
        EXPECT_EQ(in(AppLanguage::fr, key), QString::fromStdString(SensorNames::friendly(key))) << key;
    }
}

TEST_F(SensorLabels, TranslateWellKnownSensorsAsAWhole) {
    EXPECT_EQ(in(AppLanguage::en, "TC0P"), QStringLiteral("Processor (proximity)"));
    EXPECT_EQ(in(AppLanguage::de, "TB0T"), QStringLiteral("Batterie"));
    EXPECT_EQ(in(AppLanguage::ru, "TH0b"), QStringLiteral("Диск SSD 2"));
    EXPECT_EQ(in(AppLanguage::srCyrl, "TCXC"), QStringLiteral("Процесор (PECI)"));
}

TEST_F(SensorLabels, TranslateTheWordsOfGeneratedNamesAndKeepTheKeysPart) {
    EXPECT_EQ(in(AppLanguage::en, "Tg0f"), QStringLiteral("Graphics 0f"));
    EXPECT_EQ(in(AppLanguage::en, "TC1C"), QStringLiteral("CPU core 1"));
    EXPECT_EQ(in(AppLanguage::de, "Tp0D"), QStringLiteral("Performance-Kern 0D"));
    EXPECT_EQ(in(AppLanguage::it, "Te05"), QStringLiteral("Efficiency core 05"));
    EXPECT_EQ(in(AppLanguage::es, "Tm02"), QStringLiteral("Memoria 02"));
    EXPECT_EQ(in(AppLanguage::pt, "Ts9Q"), QStringLiteral("Superfície 9Q"));
    EXPECT_EQ(in(AppLanguage::ru, "Tb7x"), QStringLiteral("Аккумулятор 7x"));
    EXPECT_EQ(in(AppLanguage::srCyrl, "TZ9X"), QStringLiteral("Сензор TZ9X"))
        << "the key is not transliterated";
}

TEST_F(SensorLabels, KeepALetterOfTheKeyInEveryScript) {
    EXPECT_EQ(in(AppLanguage::srCyrl, "TC0E"), QStringLiteral("Процесор (E)"));
    EXPECT_EQ(in(AppLanguage::srCyrl, "TC0F"), QStringLiteral("Процесор (F)"));
    EXPECT_EQ(in(AppLanguage::ru, "TC0F"), QStringLiteral("Процессор (F)"));
    EXPECT_EQ(in(AppLanguage::srCyrl, "TC0D"), QStringLiteral("Процесор (диода)")) << "a word";
}

TEST_F(SensorLabels, KeepTheBlankOfAnEmptyRest) {
    EXPECT_EQ(in(AppLanguage::en, "Tb"), QStringLiteral("Battery "));
    EXPECT_EQ(in(AppLanguage::en, ""), QStringLiteral("Sensor "));
}

TEST_F(SensorLabels, HaveARowForEveryWordThatNamesCanBeginWith) {
    Localizer::setLanguage(AppLanguage::ru);
    for (const char* const key : {"TC1C", "Tp00", "Tf00", "Te00", "Tg00", "Tm00", "Ts00", "Tb00", "TZ00"}) {
        const QString french = QString::fromStdString(SensorNames::friendly(key));
        EXPECT_NE(SensorLabel::name(QString::fromUtf8(key)), french) << key;
    }
}

} // namespace Fenwhirl
