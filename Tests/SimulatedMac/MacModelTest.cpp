#include "SimulatedMac/MacModel.h"

#include "SimulatedMac/ValueCoding.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace simulated {
namespace {

struct Machine {
    MachineTable table;
    MacModel model;
    MacState state;
    MacInputs inputs;

    explicit Machine(std::string_view name)
        : table(*findMachine(name))
        , model(makeModel(table))
        , state(recordedState(model, table)) {
        const KeyStore keys(table);
        const FanFirmware firmware(keys);
        for (unsigned fan = 0; fan < firmware.count(); ++fan) {
            inputs.fans[fan].limits = firmware.limits(keys, fan);
        }
        inputs.heat = model.idle;
    }

    void run(double seconds) { advance(state, model, inputs, seconds); }

    [[nodiscard]] double die() const { return at(state.thermal.celsius, ThermalNode::die); }

    void steer(double rpm) {
        for (FanInput& fan : inputs.fans) {
            fan.manualTargetRPM = rpm;
        }
    }
};

TEST(MacModel, EveryMachineStandsStillAtItsRecordingUnderTheRecordedHeat) {
    for (const EmbeddedTable& embedded : embeddedTables()) {
        Machine machine(embedded.name);
        const double before = machine.die();
        machine.inputs.heat = machine.model.recorded;
        machine.run(30);
        EXPECT_NEAR(machine.die(), before, 3) << embedded.name;
        machine.run(1200);
        EXPECT_NEAR(machine.die(), before, 8) << embedded.name;
    }
}

TEST(MacModel, EveryMachineWarmsUpUnderLoadAndStaysBelowItsLimit) {
    for (const EmbeddedTable& embedded : embeddedTables()) {
        Machine machine(embedded.name);
        machine.run(1200);
        const double idle = machine.die();
        machine.inputs.heat = {.processorWatts = machine.model.powers.processorWatts,
                               .graphicsWatts = machine.model.powers.graphicsWatts};
        machine.run(1200);
        EXPECT_GT(machine.die(), idle + 20) << embedded.name;
        EXPECT_LT(machine.die(), 102.5) << embedded.name;
    }
}

TEST(MacModel, TheFirmwareSpeedsFansUpUnderLoadAndLetsThemDownAgain) {
    Machine machine("MacBookPro11,4");
    machine.inputs.heat = {.processorWatts = 47, .graphicsWatts = 0};
    machine.run(300);
    EXPECT_GT(machine.state.fans[0].rpm, 4000);
    EXPECT_GT(machine.state.fans[1].rpm, 3700);
    machine.inputs.heat = machine.model.idle;
    machine.run(900);
    EXPECT_NEAR(machine.state.fans[0].rpm, 2160, 10);
    EXPECT_NEAR(machine.state.fans[1].rpm, 2000, 10);
}

TEST(MacModel, AManualFanHoldsItsTargetWhateverTheTemperature) {
    Machine machine("MacBookPro11,4");
    machine.steer(2500);
    machine.inputs.heat = {.processorWatts = 47, .graphicsWatts = 0};
    machine.run(600);
    EXPECT_NEAR(machine.state.fans[0].rpm, 2500, 5);
    EXPECT_GT(machine.die(), 96) << "too little air for this much heat";
}

TEST(MacModel, FasterFansCool) {
    Machine machine("MacBookPro11,4");
    machine.inputs.heat = {.processorWatts = 30, .graphicsWatts = 0};
    machine.steer(2000);
    machine.run(1200);
    const double slow = machine.die();
    machine.steer(6156);
    machine.run(1200);
    EXPECT_LT(machine.die(), slow - 10);
}

TEST(MacModel, TheCurveFollowsHeatWithADelay) {
    Machine machine("MacBookPro11,4");
    machine.inputs.heat = {.processorWatts = 47, .graphicsWatts = 0};
    machine.run(1.5);
    EXPECT_GT(machine.die(), 66) << "the die is quick";
    EXPECT_LT(machine.state.fans[0].targetRPM, 2300) << "the fans do not chase a peak";
}

TEST(MacModel, AMachineWithoutFansHasNone) {
    const Machine machine("MacBook10,1");
    EXPECT_EQ(machine.state.fanCount, 0U);
}

TEST(MacModel, TheAppleSiliconFansRestWhileItIsCool) {
    Machine machine("AppleSilicon");
    machine.run(600);
    EXPECT_EQ(machine.state.fans[0].rpm, 0);
    machine.inputs.heat = {.processorWatts = 38, .graphicsWatts = 0};
    machine.run(300);
    EXPECT_GT(machine.state.fans[0].rpm, 1350);
    machine.inputs.heat = machine.model.idle;
    machine.run(900);
    EXPECT_LT(machine.state.fans[0].rpm, 1);
}

TEST(MacModel, SleepCoolsDownToTheRoomWithFansAtRest) {
    Machine machine("MacBookPro11,4");
    machine.inputs.asleep = true;
    machine.run(4 * 3600);
    EXPECT_NEAR(machine.die(), machine.model.thermal.roomCelsius, 0.5);
    EXPECT_LT(machine.state.fans[0].rpm, 1);
}

TEST(SensorModel, NonsensicalValuesDoNotMove) {
    const Machine machine("MacBookPro11,4");
    for (const Sensor& sensor : machine.model.sensors) {
        EXPECT_NE(sensor.code, fourCC("TH0x")) << "-127: a missing sensor";
        EXPECT_NE(sensor.code, fourCC("TH0F")) << "-46: not a temperature";
        EXPECT_NE(sensor.code, fourCC("TCFC")) << "an integer";
        EXPECT_NE(sensor.code, fourCC("TCXe")) << "0.0";
    }
}

TEST(SensorModel, EveryPlausibleTemperatureKeyOfEveryMachineMoves) {
    for (const EmbeddedTable& embedded : embeddedTables()) {
        const MachineTable table = *findMachine(embedded.name);
        const MacModel model = makeModel(table);
        std::size_t plausible = 0;
        for (const KeyRecord& key : table.keys) {
            const bool temperatureType = key.type == fourCC("sp78") || key.type == fourCC("flt ");
            const auto celsius = decodeValue(key.type, key.bytes);
            if ((key.code >> 24) == 'T' && temperatureType && key.readResult == 0 && celsius &&
                *celsius > 12 && *celsius < 110) {
                ++plausible;
            }
        }
        EXPECT_EQ(model.sensors.size(), plausible) << embedded.name;
        EXPECT_GT(plausible, 15U) << embedded.name;
    }
}

TEST(SensorModel, AtTheRecordingEverySensorShowsItsRecordedValue) {
    for (const EmbeddedTable& embedded : embeddedTables()) {
        const MacModel model = makeModel(*findMachine(embedded.name));
        for (const Sensor& sensor : model.sensors) {
            EXPECT_NEAR(sensorCelsius(sensor, model.reference, model.reference, 0), sensor.recordedCelsius,
                        0.5)
                << embedded.name << " " << fourCCText(sensor.code);
        }
    }
}

TEST(SensorModel, SensorsWanderALittleSmoothlyAndTheSameEveryTime) {
    const MacModel model = makeModel(*findMachine("MacBookPro13,3"));
    bool wandered = false;
    for (const Sensor& sensor : model.sensors) {
        double before = sensorCelsius(sensor, model.reference, model.reference, 100);
        for (int i = 1; i <= 200; ++i) {
            const double seconds = 100 + i * 0.1;
            const double now = sensorCelsius(sensor, model.reference, model.reference, seconds);
            EXPECT_EQ(now, sensorCelsius(sensor, model.reference, model.reference, seconds));
            EXPECT_NEAR(now, sensor.recordedCelsius, 1.0);
            EXPECT_LE(std::abs(now - before), sensor.wholeDegrees ? 1.0 : 0.05);
            wandered = wandered || now != before;
            before = now;
        }
    }
    EXPECT_TRUE(wandered);
}

TEST(SensorModel, DieSensorsFollowAtOnceCaseSensorsLater) {
    Machine machine("MacBookPro11,4");
    machine.inputs.heat = {.processorWatts = 47, .graphicsWatts = 0};
    machine.run(10);
    for (const Sensor& sensor : machine.model.sensors) {
        const double change = sensorCelsius(sensor, machine.model.reference, machine.state.thermal, 10) -
                              sensor.recordedCelsius;
        if (sensor.code == fourCC("TC1C")) {
            EXPECT_GT(change, 12);
        }
        if (sensor.code == fourCC("Ts0P")) {
            EXPECT_LT(change, 1);
        }
    }
}

TEST(SensorModel, ASensorRecordedCoolerThanItsPartFollowsMoreWeakly) {
    const Machine machine("MacBookPro11,4");
    ThermalState warmer = machine.model.reference;
    for (double& celsius : warmer.celsius) {
        celsius += 20;
    }
    std::size_t cooler = 0;
    for (const Sensor& sensor : machine.model.sensors) {
        const double change =
            sensorCelsius(sensor, machine.model.reference, warmer, 0) - sensor.recordedCelsius;
        EXPECT_GT(change, 4) << fourCCText(sensor.code);
        if (sensor.recordedCelsius < at(machine.model.reference.celsius, sensor.node) - 5) {
            EXPECT_LT(change, 17) << fourCCText(sensor.code);
            ++cooler;
        }
    }
    EXPECT_GT(cooler, 0U);
}

TEST(SensorModel, AFanAtRestShowsZero) {
    EXPECT_EQ(shownRPM(0, 3, 10), 0);
    EXPECT_NEAR(shownRPM(0, 3000, 10), 3000, 5);
}

} // namespace
} // namespace simulated
