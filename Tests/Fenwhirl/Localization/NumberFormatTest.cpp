#include "Fenwhirl/Localization/NumberFormat.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

const double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::numeric_limits<double>::quiet_NaN();

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace

TEST(NumberFormat, GroupsSpeedsAsTheRegionDoes) {
    EXPECT_EQ(NumberFormat::rpmText(2400, QLocale(QLocale::French)), text("2\u202F400"));
    EXPECT_EQ(NumberFormat::rpmText(2400, QLocale(QLocale::German)), text("2.400"));
    EXPECT_EQ(NumberFormat::rpmText(2400, QLocale(QLocale::English)), text("2,400"));
    EXPECT_EQ(NumberFormat::rpmText(999, QLocale(QLocale::English)), text("999"));
    EXPECT_EQ(NumberFormat::rpmText(2400, QLocale(QLocale::Arabic, QLocale::Egypt)), text("٢٬٤٠٠"));
}

TEST(NumberFormat, DoesNotTakeTheGroupingFromTheLanguageOfTheInterface) {
    Localizer::setLanguage(AppLanguage::de);
    EXPECT_EQ(NumberFormat::rpmText(2400, QLocale(QLocale::English)), text("2,400"));
    Localizer::setLanguage(AppLanguage::automatic);
}

TEST(NumberFormat, CutsSpeedsTowardsZero) {
    const QLocale english(QLocale::English);
    EXPECT_EQ(NumberFormat::rpmText(1199.99, english), text("1,199"));
    EXPECT_EQ(NumberFormat::rpmText(0.9, english), text("0"));
    EXPECT_EQ(NumberFormat::rpmText(-0.9, english), text("0"));
    EXPECT_EQ(NumberFormat::rpmText(-1200.5, english), text("-1,200"));
}

TEST(NumberFormat, ShowsNonFiniteNumbersAsZero) {
    for (const double value : {infinity, -infinity, notANumber}) {
        EXPECT_EQ(NumberFormat::truncated(value), 0);
        EXPECT_EQ(NumberFormat::rounded(value), 0);
        EXPECT_EQ(NumberFormat::rpmText(value, QLocale::c()), text("0"));
        EXPECT_EQ(NumberFormat::temperatureText(value), text("0 °C"));
        EXPECT_EQ(NumberFormat::percentText(value), text("0 %"));
    }
}

TEST(NumberFormat, SaturatesBeyond64Bits) {
    EXPECT_EQ(NumberFormat::truncated(1e300), std::numeric_limits<qint64>::max());
    EXPECT_EQ(NumberFormat::truncated(-1e300), std::numeric_limits<qint64>::min());
    EXPECT_EQ(NumberFormat::truncated(9223372036854775808.0), std::numeric_limits<qint64>::max());
    EXPECT_EQ(NumberFormat::truncated(-9223372036854775808.0), std::numeric_limits<qint64>::min());
    EXPECT_EQ(NumberFormat::truncated(9223372036854774784.0), 9223372036854774784);
    EXPECT_EQ(NumberFormat::rounded(std::numeric_limits<double>::max()), std::numeric_limits<qint64>::max());
}

TEST(NumberFormat, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(NumberFormat::percentText(36.5), text("37 %"));
    EXPECT_EQ(NumberFormat::percentText(37.5), text("38 %"));
    EXPECT_EQ(NumberFormat::percentText(36.49), text("36 %"));
    EXPECT_EQ(NumberFormat::rounded(-0.5), -1);
    EXPECT_EQ(NumberFormat::rounded(0.49999999999999994), 0);
}

TEST(NumberFormat, WritesTemperaturesWithABlankBeforeTheUnit) {
    EXPECT_EQ(NumberFormat::temperatureText(62.5), text("63 °C"));
    EXPECT_EQ(NumberFormat::temperatureText(-0.4), text("0 °C"));
    EXPECT_EQ(NumberFormat::degreesText(84.6), text("85"));
}

TEST(NumberFormat, WritesMemoryInTheShownLanguage) {
    Localizer::setLanguage(AppLanguage::fr);
    EXPECT_EQ(NumberFormat::memoryText(3411.6, QLocale(QLocale::French)), text("3\u202F412 Mo"));
    Localizer::setLanguage(AppLanguage::en);
    EXPECT_EQ(NumberFormat::memoryText(38.2, QLocale(QLocale::English)), text("38 MB"));
    Localizer::setLanguage(AppLanguage::srCyrl);
    EXPECT_EQ(NumberFormat::memoryText(38.2, QLocale(QLocale::English)), text("38 МБ"));
    Localizer::setLanguage(AppLanguage::automatic);
}

TEST(NumberFormat, WritesARangeAsTheShownLanguageDoes) {
    Localizer::setLanguage(AppLanguage::fr);
    EXPECT_EQ(NumberFormat::rangeText(text("55"), text("72 °C")), text("55 – 72 °C"));
    Localizer::setLanguage(AppLanguage::de);
    EXPECT_EQ(NumberFormat::rangeText(text("55"), text("72 °C")), text("55–72 °C"));
    Localizer::setLanguage(AppLanguage::automatic);
}

TEST(NumberFormat, WritesHoursAndMinutesAsTheRegionDoes) {
    const QTime afternoon(14, 5, 59);
    EXPECT_EQ(NumberFormat::clockText(afternoon, QLocale(QLocale::French)), text("14:05"));
    EXPECT_EQ(NumberFormat::clockText(afternoon, QLocale(QLocale::English, QLocale::UnitedStates)).left(4),
              text("2:05"));
    EXPECT_EQ(NumberFormat::clockText(afternoon, QLocale(QLocale::Finnish)), text("14.05"));
    EXPECT_EQ(NumberFormat::clockText(afternoon, QLocale(QLocale::French, QLocale::Canada)), text("14 h 05"));
    EXPECT_EQ(NumberFormat::clockText(QTime(0, 0), QLocale(QLocale::German)), text("00:00"));
}

TEST(NumberFormat, WritesNoSecondsWhereTheRegionsShortFormHasThem) {
    // The short form of this locale is "14:05:59" with Qt 6.4 and 6.8, and "14:05" with newer versions.
    EXPECT_EQ(NumberFormat::clockText(QTime(14, 5, 59), QLocale::c()), text("14:05"));
}

TEST(NumberFormat, HasNoTextForATimeThatIsNone) {
    EXPECT_EQ(NumberFormat::clockText(QTime(), QLocale(QLocale::French)), QString());
}

} // namespace Fenwhirl
