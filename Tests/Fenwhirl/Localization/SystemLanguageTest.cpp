// These tests change the system's list of languages through the environment. They do not apply where the list
// comes from the system settings, which a test cannot change.

#include "Fenwhirl/Localization/Localizer.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

class SystemLanguage : public testing::Test {
protected:
    void SetUp() override { Localizer::setLanguage(AppLanguage::automatic); }

    void TearDown() override { qputenv("LANGUAGE", before_); }

private:
    const QByteArray before_ = qgetenv("LANGUAGE");
};

} // namespace

TEST_F(SystemLanguage, ChangesAtTheNextLookup) {
    qputenv("LANGUAGE", "de_CH:fr_FR");
    EXPECT_EQ(Localizer::resolved(), AppLanguage::de);
    EXPECT_EQ(localized(u"Capteurs"), QStringLiteral("Sensoren"));
    qputenv("LANGUAGE", "sr_RS@latin");
    EXPECT_EQ(Localizer::resolved(), AppLanguage::srLatn);
    EXPECT_EQ(localized(u"Capteurs"), QStringLiteral("Senzori"));
    qputenv("LANGUAGE", "sr_RS");
    EXPECT_EQ(Localizer::resolved(), AppLanguage::srCyrl);
    EXPECT_EQ(localized(u"Capteurs"), QStringLiteral("Сензори"));
    qputenv("LANGUAGE", "fr_CA");
    EXPECT_EQ(localized(u"Capteurs"), QStringLiteral("Capteurs"));
}

TEST_F(SystemLanguage, DoesNotMatterOnceALanguageIsChosen) {
    qputenv("LANGUAGE", "de");
    Localizer::setLanguage(AppLanguage::ru);
    EXPECT_EQ(localized(u"Capteurs"), QStringLiteral("Датчики"));
    Localizer::setLanguage(AppLanguage::automatic);
}

} // namespace Fenwhirl
