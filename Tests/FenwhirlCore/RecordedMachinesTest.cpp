// Runs the key tables of real Macs through the whole core, and compares the results with an independent
// parser of the same files and with values worked out by hand.

#include "FenwhirlCore/Platform/SystemText.h"
#include "FenwhirlCore/RecordedTable.h"
#include "FenwhirlCore/SensorNames.h"
#include "Support/ScriptedSMC.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

std::string tablePath(const std::string& model) {
    return std::string(FENWHIRL_MACHINES) + "/" + model + ".csv";
}

// The models of all recorded tables in the folder; each is a machine to test.
std::vector<std::string> recordedModels() {
    std::vector<std::string> models;
    for (const auto& entry : std::filesystem::directory_iterator(FENWHIRL_MACHINES)) {
        if (entry.path().extension() == ".csv") {
            models.push_back(entry.path().stem().string());
        }
    }
    std::ranges::sort(models);
    return models;
}

class NoText final : public SystemText {
public:
    bool value(std::string_view, char*, std::size_t&) const override { return false; }

    bool isTranslated() const override { return false; }

    std::string version() const override { return "test"; }
};

class RecordedMachine : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        ASSERT_TRUE(controller.loadTable(tablePath(GetParam())));
        ASSERT_GT(table.keys.size(), 100U);
    }

    const RecordedTable table = RecordedTable(tablePath(GetParam()));
    ScriptedSMC controller;
    SMC smc = controller.open();
};

TEST_P(RecordedMachine, ListsItsKeysInTheirOrder) {
    std::vector<std::string> names;
    for (const RecordedKey& key : table.keys) {
        names.push_back(key.name);
    }
    EXPECT_EQ(smc.allKeys(), names);
    EXPECT_EQ(table.value("#KEY"), names.size());
}

TEST_P(RecordedMachine, EveryKeyReadsAsRecorded) {
    for (const RecordedKey& key : table.keys) {
        EXPECT_EQ(smc.info(key.name)->size, key.size) << key.name;
        EXPECT_EQ(smc.describe(key.name), key.line());
        EXPECT_EQ(smc.readValue(key.name), key.value()) << key.name;
    }
}

TEST_P(RecordedMachine, ItsSensorsAreFoundReadAndNamed) {
    const auto expected = table.sensors();
    const auto keys = smc.discoverTemperatureKeys();
    EXPECT_EQ(keys, expected);
    EXPECT_FALSE(keys.empty());
    std::vector<TemperatureReading> readings;
    for (const std::string& key : expected) {
        readings.push_back({key, table.value(key).value()});
    }
    EXPECT_EQ(smc.readTemperatures(keys), readings);
    for (const std::string& key : keys) {
        EXPECT_FALSE(SensorNames::friendly(key).empty()) << key;
    }
}

TEST_P(RecordedMachine, ItsFansReportTheirRange) {
    const auto fans = smc.readFans();
    ASSERT_EQ(fans.size(), table.value("FNum").value_or(0));
    for (std::size_t i = 0; i < fans.size(); ++i) {
        const std::string prefix = "F" + std::to_string(i);
        const FanReading expected{static_cast<int>(i), table.value(prefix + "Ac").value(),
                                  table.value(prefix + "Mn").value(), table.value(prefix + "Mx").value(),
                                  table.value(prefix + "Tg").value()};
        EXPECT_EQ(fans[i], expected);
        EXPECT_LT(fans[i].minRPM, fans[i].maxRPM);
    }
}

TEST_P(RecordedMachine, ItsFansAreDrivenAndHandedBack) {
    for (const FanReading& fan : smc.readFans()) {
        const std::string prefix = "F" + std::to_string(fan.index);
        EXPECT_TRUE(smc.setFanSpeed(fan.index, 1e6));
        EXPECT_EQ(controller.number(prefix + "Tg"), fan.maxRPM);
        EXPECT_TRUE(smc.setFanSpeed(fan.index, 0));
        EXPECT_EQ(controller.number(prefix + "Tg"), fan.minRPM);
        const bool isForced = controller.has("FS! ") && controller.number("FS! ") != 0;
        const bool isManual = controller.has(prefix + "Md") && controller.number(prefix + "Md") == 1;
        EXPECT_TRUE(isForced || isManual);
    }
    EXPECT_TRUE(smc.resetFans());
    for (const char* key : {"FS! ", "Ftst"}) {
        if (controller.has(key)) {
            EXPECT_EQ(controller.number(key), 0) << key;
        }
    }
    for (int fan = 0; controller.has("F" + std::to_string(fan) + "Md"); ++fan) {
        EXPECT_EQ(controller.number("F" + std::to_string(fan) + "Md"), 0);
    }
}

TEST_P(RecordedMachine, ItsReportHoldsEveryFanAndTemperatureKey) {
    std::string expected = "Fenwhirl : rapport de diagnostic\nModèle du Mac : inconnu\nProcesseur : inconnu\n"
                           "Programme : arm64 (natif Apple)\nLancé via Rosetta : non\nmacOS : test\n"
                           "Nombre de clés SMC : " +
                           std::to_string(table.keys.size()) + "\nNombre de ventilateurs (FNum) : " +
                           std::to_string(static_cast<int>(table.value("FNum").value_or(0))) +
                           "\n\n-- Clés des ventilateurs (F…) --\n";
    int sensors = 0;
    std::string temperatures;
    for (const RecordedKey& key : table.keys) {
        if (key.name[0] == 'F') {
            expected += key.line() + "\n";
        }
        if (key.name[0] == 'T' && key.isReadable && (key.type == "sp78" || key.type == "flt ")) {
            temperatures += key.line() + "\n";
            ++sensors;
        }
    }
    expected += "\n-- Températures (T…) --\n" + temperatures + "Total : " + std::to_string(sensors) +
                " capteurs de température";
    EXPECT_EQ(smc.diagnosticReport(NoText()), expected);
}

INSTANTIATE_TEST_SUITE_P(Models, RecordedMachine, testing::ValuesIn(recordedModels()),
                         [](const auto& parameter) {
                             std::string name = parameter.param;
                             std::ranges::replace(name, ',', '_');
                             return name;
                         });

class GoldenMachine : public testing::Test {
protected:
    ScriptedSMC controller;
    SMC smc = controller.open();
};

TEST_F(GoldenMachine, ADesktopOf2019HasOneFanAndSeventySensors) {
    ASSERT_TRUE(controller.loadTable(tablePath("iMac19,1")));
    EXPECT_EQ(smc.readFans(), (std::vector<FanReading>{{0, 1203, 1200, 2700, 1200}}));
    const auto keys = smc.discoverTemperatureKeys();
    EXPECT_EQ(keys.size(), 70U);
    EXPECT_EQ(keys.front(), "TA0P");
    EXPECT_EQ(keys.back(), "Tp2h");
    EXPECT_EQ(smc.readValue("TC0P"), 40.125);
    EXPECT_EQ(smc.describe("F0Mx"), "F0Mx | type fpe2 | 2 octets | 2A 30 | valeur 2700.00");
    EXPECT_TRUE(smc.diagnosticReport(NoText()).ends_with("\nTotal : 100 capteurs de température"));
}

TEST_F(GoldenMachine, ALaptopOf2019HasTwoFansOfSinglePrecision) {
    ASSERT_TRUE(controller.loadTable(tablePath("MacBookPro16,1")));
    const auto fans = smc.readFans();
    ASSERT_EQ(fans.size(), 2U);
    EXPECT_EQ(fans[0].minRPM, 1836);
    EXPECT_EQ(fans[1].minRPM, 1700);
    EXPECT_EQ(fans[1].maxRPM, 4905);
    EXPECT_EQ(fans[1].targetRPM, 1700);
    EXPECT_EQ(smc.describe("F1Mx"), "F1Mx | type flt  | 4 octets | 00 48 99 45 | valeur 4905.00");
    EXPECT_EQ(smc.describe("F0Md"), "F0Md | type ui8  | 1 octets | 00 | valeur 0.00");
    EXPECT_EQ(smc.discoverTemperatureKeys().size(), 46U);
}

TEST_F(GoldenMachine, ATowerOf2019HasFourFans) {
    ASSERT_TRUE(controller.loadTable(tablePath("MacPro7,1")));
    EXPECT_EQ(smc.fanCount(), 4);
    EXPECT_EQ(smc.readFans()[2].maxRPM, 2601);
    EXPECT_EQ(smc.discoverTemperatureKeys().size(), 125U);
}

TEST_F(GoldenMachine, ADesktopOf2010HasThreeFansAndAMask) {
    ASSERT_TRUE(controller.loadTable(tablePath("iMac11,2")));
    EXPECT_EQ(smc.readFans(),
              (std::vector<FanReading>{
                  {0, 998, 1000, 4350, 1000}, {1, 1097, 1100, 6300, 1100}, {2, 1197, 1200, 2600, 1200}}));
    EXPECT_TRUE(smc.setFanSpeed(1, 3000));
    EXPECT_EQ(controller.number("FS! "), 2);
}

TEST_F(GoldenMachine, ALaptopWithoutFansHasOnlySensors) {
    ASSERT_TRUE(controller.loadTable(tablePath("MacBook10,1")));
    EXPECT_TRUE(smc.readFans().empty());
    EXPECT_EQ(smc.discoverTemperatureKeys().size(), 32U);
    EXPECT_EQ(smc.readValue("TCXC"), 51.34375);
    EXPECT_EQ(smc.fanWriteTest(0), "Aucun ventilateur sur ce Mac.");
}

} // namespace

} // namespace Fenwhirl
