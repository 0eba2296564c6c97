#include "Fenwhirl/Monitoring/FanSummary.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <QLocale>

#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

QList<FanState> fansAt(std::initializer_list<double> speeds) {
    QList<FanState> fans;
    for (const double rpm : speeds) {
        fans.append({static_cast<int>(fans.size()), rpm, 1200, 6000, rpm});
    }
    return fans;
}

class FanSummary : public testing::Test {
protected:
    FanSummary() { Localizer::setLanguage(AppLanguage::fr); }

    ~FanSummary() override { Localizer::setLanguage(AppLanguage::automatic); }

    FanSummary(const FanSummary&) = delete;
    FanSummary& operator=(const FanSummary&) = delete;
};

} // namespace

TEST_F(FanSummary, AverageIsTheMeanOfTheSpeeds) {
    EXPECT_EQ(averageFanSpeed({}), 0);
    EXPECT_EQ(averageFanSpeed(fansAt({1000, 2001})), 1500.5);
}

TEST_F(FanSummary, StatusItemShowsSpeedAndTemperature) {
    const QString speed = QLocale::system().toString(2400);
    EXPECT_EQ(statusItemText(fansAt({2400.9}), 63.9), speed + QStringLiteral(" tr/min · 63 °C"));
}

TEST_F(FanSummary, StatusItemLeavesOutWhatIsUnknown) {
    const QString speed = QLocale::system().toString(2400);
    EXPECT_EQ(statusItemText(fansAt({2400}), std::nullopt), speed + QStringLiteral(" tr/min"));
    EXPECT_EQ(statusItemText({}, 63), QStringLiteral("63 °C"));
    EXPECT_EQ(statusItemText({}, std::nullopt), QStringLiteral("Fenwhirl"));
}

TEST_F(FanSummary, StatusItemShowsZeroForSpeedsThatAreNoNumbers) {
    const QString nought = QLocale::system().toString(0);
    EXPECT_EQ(statusItemText(fansAt({std::numeric_limits<double>::quiet_NaN(), 2000}), 50),
              nought + QStringLiteral(" tr/min · 50 °C"));
    EXPECT_EQ(statusItemText(fansAt({std::numeric_limits<double>::infinity()}), 50),
              nought + QStringLiteral(" tr/min · 50 °C"));
}

TEST_F(FanSummary, OneFanNeedsNoNumber) {
    EXPECT_EQ(fanDisplayName({4, 0, 0, 0, 0}, 1), QStringLiteral("Ventilateur"));
}

TEST_F(FanSummary, TwoFansAreLeftAndRight) {
    EXPECT_EQ(fanDisplayName({0, 0, 0, 0, 0}, 2), QStringLiteral("Ventilateur gauche"));
    EXPECT_EQ(fanDisplayName({1, 0, 0, 0, 0}, 2), QStringLiteral("Ventilateur droit"));
    EXPECT_EQ(fanDisplayName({2, 0, 0, 0, 0}, 2), QStringLiteral("Ventilateur droit"));
}

TEST_F(FanSummary, MoreFansAreNumberedFromOne) {
    EXPECT_EQ(fanDisplayName({0, 0, 0, 0, 0}, 3), QStringLiteral("Ventilateur 1"));
    EXPECT_EQ(fanDisplayName({2, 0, 0, 0, 0}, 3), QStringLiteral("Ventilateur 3"));
    EXPECT_EQ(fanDisplayName({std::numeric_limits<int>::max(), 0, 0, 0, 0}, 3),
              QStringLiteral("Ventilateur 2147483648"));
}

TEST_F(FanSummary, HealthHasAWordAndADetail) {
    EXPECT_EQ(word(HealthStatus::normal), QStringLiteral("Tout est normal"));
    EXPECT_EQ(word(HealthStatus::warm), QStringLiteral("Le Mac est chaud"));
    EXPECT_EQ(word(HealthStatus::hot), QStringLiteral("Surchauffe"));
    EXPECT_EQ(detail(HealthStatus::normal), QStringLiteral("Mac en bonne santé"));
    EXPECT_EQ(detail(HealthStatus::warm), QStringLiteral("Les ventilateurs travaillent"));
    EXPECT_EQ(detail(HealthStatus::hot), QStringLiteral("Ferme des applications"));
}

} // namespace Fenwhirl
