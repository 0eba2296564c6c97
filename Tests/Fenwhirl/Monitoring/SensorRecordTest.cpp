// The lowest and highest readings of the last ten minutes.

#include "Fenwhirl/Monitoring/SensorRecord.h"

#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace Fenwhirl {

namespace {

class Sensor {
public:
    // Records one reading of one sensor at this second, and returns the range on record.
    std::pair<double, double> read(double celsius, double second) {
        QList<SensorState> sensors = {{QStringLiteral("TC0P"), celsius}};
        record_.add(sensors, std::chrono::duration<double>(second));
        return {sensors.first().lowestCelsius, sensors.first().highestCelsius};
    }

private:
    SensorRecord record_;
};

using Range = std::pair<double, double>;

TEST(SensorRecord, BeginsWithTheFirstReading) {
    EXPECT_EQ(Sensor().read(50, 1000), Range(50, 50));
}

TEST(SensorRecord, KeepsLowestAndHighest) {
    Sensor sensor;
    sensor.read(50, 1000);
    EXPECT_EQ(sensor.read(71, 1002), Range(50, 71));
    EXPECT_EQ(sensor.read(45, 1004), Range(45, 71));
    EXPECT_EQ(sensor.read(60, 1006), Range(45, 71));
}

TEST(SensorRecord, ForgetsAfterTenMinutesAndAtMostHalfAMinuteMore) {
    Sensor sensor;
    sensor.read(80, 1000);
    for (double second = 1002; second < 1600; second += 2) {
        EXPECT_EQ(sensor.read(50, second), Range(50, 80)) << second;
    }
    EXPECT_EQ(sensor.read(50, 1600), Range(50, 80));
    sensor.read(50, 1616);
    EXPECT_EQ(sensor.read(50, 1632), Range(50, 50));
}

TEST(SensorRecord, KeepsAPeakWhoseHalfMinuteWasLongPassedOver) {
    Sensor sensor;
    sensor.read(80, 1000);
    EXPECT_EQ(sensor.read(50, 1590), Range(50, 80)); // a single pause, shorter than ten minutes
    EXPECT_EQ(sensor.read(50, 1650), Range(50, 50));
}

TEST(SensorRecord, StartsAnewAfterASleepOfMoreThanTenMinutes) {
    Sensor sensor;
    sensor.read(80, 1000);
    EXPECT_EQ(sensor.read(50, 1000 + 601), Range(50, 50));
    EXPECT_EQ(sensor.read(51, 1000 + 601 + 8 * 3600), Range(51, 51));
    EXPECT_EQ(sensor.read(50, 1e12), Range(50, 50));
}

TEST(SensorRecord, SurvivesAClockThatGoesBack) {
    Sensor sensor;
    sensor.read(80, 1000);
    EXPECT_EQ(sensor.read(50, 10), Range(50, 50));
    EXPECT_EQ(sensor.read(60, -70), Range(60, 60));
    EXPECT_EQ(sensor.read(61, 5), Range(60, 61));
}

TEST(SensorRecord, NotesNothingThatIsNoNumber) {
    constexpr double tooMuch = std::numeric_limits<double>::infinity();
    Sensor sensor;
    sensor.read(50, 1000);
    sensor.read(std::numeric_limits<double>::quiet_NaN(), 1002);
    EXPECT_EQ(sensor.read(tooMuch, 1004), Range(tooMuch, tooMuch));
    EXPECT_EQ(sensor.read(-tooMuch, 1006), Range(-tooMuch, -tooMuch));
    EXPECT_EQ(sensor.read(52, 1008), Range(50, 52));
}

TEST(SensorRecord, KeepsSensorsApartWhateverTheirOrder) {
    SensorRecord record;
    QList<SensorState> sensors = {{QStringLiteral("TC0P"), 50}, {QStringLiteral("TB0T"), 31}};
    record.add(sensors, std::chrono::duration<double>(1000));
    sensors = {{QStringLiteral("TB0T"), 30}, {QStringLiteral("TG0P"), 44}, {QStringLiteral("TC0P"), 70}};
    record.add(sensors, std::chrono::duration<double>(1002));
    EXPECT_EQ(sensors.at(0), (SensorState{QStringLiteral("TB0T"), 30, 30, 31}));
    EXPECT_EQ(sensors.at(1), (SensorState{QStringLiteral("TG0P"), 44, 44, 44}));
    EXPECT_EQ(sensors.at(2), (SensorState{QStringLiteral("TC0P"), 70, 50, 70}));
}

TEST(SensorRecord, RemembersASensorThatIsMissingForAWhile) {
    SensorRecord record;
    QList<SensorState> sensors = {{QStringLiteral("TC0P"), 80}};
    QList<SensorState> none;
    record.add(sensors, std::chrono::duration<double>(1000));
    for (double second = 1002; second < 1100; second += 2) {
        record.add(none, std::chrono::duration<double>(second));
    }
    sensors = {{QStringLiteral("TC0P"), 50}};
    record.add(sensors, std::chrono::duration<double>(1100));
    EXPECT_EQ(sensors.first().highestCelsius, 80);
}

} // namespace

} // namespace Fenwhirl
