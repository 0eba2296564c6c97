#include "Fenwhirl/Monitoring/SensorSummary.h"

#include <gtest/gtest.h>
#include <vector>

namespace Fenwhirl {

namespace {

using Readings = std::vector<TemperatureReading>;

QString ids(const QList<SensorState>& sensors) {
    QStringList list;
    for (const SensorState& sensor : sensors) {
        list += sensor.id;
    }
    return list.join(u' ');
}

SensorState sensor(const char* id, double celsius) {
    return {QString::fromLatin1(id), celsius};
}

} // namespace

TEST(PrimaryTemperature, PreferredKeyWinsEvenWhenCooler) {
    EXPECT_EQ(primaryTemperature(Readings{{"TG0P", 95}, {"TC0P", 41}, {"TC1C", 80}}), 41);
}

TEST(PrimaryTemperature, OrderOfTheKeysDecidesNotThatOfTheReadings) {
    EXPECT_EQ(primaryTemperature(Readings{{"TC0P", 41}, {"TCXC", 40}}), 40);
    EXPECT_EQ(primaryTemperature(Readings{{"Tp0b", 41}, {"Tp01", 30}}), 30);
}

TEST(PrimaryTemperature, FirstOfTwoReadingsOfAKeyCounts) {
    EXPECT_EQ(primaryTemperature(Readings{{"TC0P", 41}, {"TC0P", 60}}), 41);
}

TEST(PrimaryTemperature, ElseTheHottestProcessorSensor) {
    EXPECT_EQ(primaryTemperature(Readings{{"TG0P", 95}, {"TC7C", 60}, {"Te05", 61}, {"Tf14", 59}}), 61);
    EXPECT_EQ(primaryTemperature(Readings{{"TG0P", 95}, {"Tp9x", 20}}), 20);
    EXPECT_EQ(primaryTemperature(Readings{{"Tc0x", 95}, {"TF0x", 20}, {"tC0x", 30}, {"Tf0x", 10}}), 10);
}

TEST(PrimaryTemperature, ElseTheHottestOfAll) {
    EXPECT_EQ(primaryTemperature(Readings{{"TG0P", 45}, {"TB0T", 30}, {"TM0P", 51}}), 51);
}

TEST(PrimaryTemperature, IsAbsentWithoutReadings) {
    EXPECT_EQ(primaryTemperature({}), std::nullopt);
}

TEST(FeaturedSensors, FeaturedKeysComeFirstThenTheHottestOthers) {
    const QList<SensorState> sensors = {sensor("TX00", 20), sensor("TX01", 80), sensor("Tg0f", 30),
                                        sensor("TX02", 70), sensor("TC0P", 40), sensor("TX03", 80),
                                        sensor("TX04", 10)};
    EXPECT_EQ(ids(featuredSensors(sensors)), QStringLiteral("TC0P Tg0f TX01 TX03 TX02 TX00"));
}

TEST(FeaturedSensors, AreAtMostSixInTheOrderOfTheFeaturedKeys) {
    const QList<SensorState> sensors = {sensor("TH0A", 1), sensor("TM0P", 2), sensor("TGDD", 3),
                                        sensor("TG0P", 4), sensor("TCGC", 5), sensor("TC1C", 6),
                                        sensor("TCXC", 7), sensor("ZZZZ", 99)};
    EXPECT_EQ(ids(featuredSensors(sensors)), QStringLiteral("TCXC TC1C TCGC TG0P TGDD TM0P"));
}

TEST(FeaturedSensors, FewSensorsAreAllShown) {
    EXPECT_EQ(ids(featuredSensors({sensor("TX00", 20), sensor("TX01", 30), sensor("TB0T", 25)})),
              QStringLiteral("TB0T TX01 TX00"));
    EXPECT_TRUE(featuredSensors({}).isEmpty());
}

TEST(HealthStatus, ThresholdsCountFromExactlyTheirValueOn) {
    EXPECT_EQ(healthStatus(84.999, 85, 92), HealthStatus::normal);
    EXPECT_EQ(healthStatus(85, 85, 92), HealthStatus::warm);
    EXPECT_EQ(healthStatus(91.999, 85, 92), HealthStatus::warm);
    EXPECT_EQ(healthStatus(92, 85, 92), HealthStatus::hot);
}

TEST(HealthStatus, HotIsAskedFirst) {
    EXPECT_EQ(healthStatus(60, 85, 50), HealthStatus::hot);
}

TEST(HealthStatus, IsNormalWithoutATemperature) {
    EXPECT_EQ(healthStatus(std::nullopt, -10, -10), HealthStatus::normal);
}

} // namespace Fenwhirl
