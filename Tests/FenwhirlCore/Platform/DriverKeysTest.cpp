// Which driver the transport chooses, and which keys it makes of the driver's files.

#include "FenwhirlCore/Platform/DriverSensorKeys.h"
#include "FenwhirlCore/Platform/DriverTransport.h"
#include "FenwhirlCore/Platform/DriverTrees.h"
#include "FenwhirlCore/SMC.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using testing::ElementsAre;

SMC open(const DriverTree& tree) {
    return SMC(openDriverTransport(systemDriverFiles(tree.root())));
}

TEST(DriverKeys, OfTwoDriversTheOneWithTheLowerNumberIsTaken) {
    DriverTree tree;
    tree.makeIntelLaptop(); // hwmon2
    tree.write("sys/class/hwmon/hwmon10/name", "macsmc_hwmon\n");
    tree.write("sys/class/hwmon/hwmon10/temp1_input", "50000\n");
    EXPECT_EQ(open(tree).fanCount(), 2);
}

TEST(DriverKeys, ADriverWithoutAnyChannelIsPassedOver) {
    DriverTree tree;
    tree.makeIntelLaptop();
    tree.write("sys/class/hwmon/hwmon0/name", "t2smc\n");
    tree.write("sys/class/hwmon/hwmon0/fan_input", "1\n");
    tree.write("sys/class/hwmon/hwmon0/temp1_label", "TC0P\n");
    EXPECT_EQ(open(tree).fanCount(), 2);
}

TEST(DriverKeys, AnIntelDriverMayHaveItsFilesInTheFolderOfItsClass) {
    DriverTree tree;
    const std::string folder = "sys/class/hwmon/hwmon5/";
    tree.write(folder + "name", "applesmc\n");
    for (const char* file : {"fan1_input", "fan1_min", "fan1_max", "fan1_target"}) {
        tree.write(folder + file, "2000\n", true);
    }
    tree.write(folder + "pwm1_enable", "2\n", true);
    tree.write(folder + "temp1_label", "TC0P\n");
    tree.write(folder + "temp1_input", "51250\n");
    SMC smc = open(tree);
    EXPECT_THAT(smc.allKeys(), ElementsAre("#KEY", "F0Ac", "F0Md", "F0Mn", "F0Mx", "F0Tg", "FNum", "TC0P"));
    EXPECT_EQ(smc.describe("TC0P"), "TC0P | type sp78 | 2 octets | 33 40 | valeur 51.25");
}

TEST(DriverKeys, ADriverThatCallsItselfT2smcHasSinglePrecision) {
    DriverTree tree;
    const std::string folder = "sys/class/hwmon/hwmon5/";
    tree.write(folder + "name", "t2smc\n");
    for (const char* file : {"fan1_input", "fan1_min", "fan1_max", "fan1_target"}) {
        tree.write(folder + file, "2000\n", true);
    }
    tree.write(folder + "fan1_enable", "1\n", true);
    tree.write(folder + "temp1_label", "TC0P\n");
    tree.write(folder + "temp1_input", "51250\n");
    SMC smc = open(tree);
    EXPECT_EQ(smc.describe("F0Ac"), "F0Ac | type flt  | 4 octets | 00 00 FA 44 | valeur 2000.00");
    EXPECT_TRUE(smc.setFanSpeed(0, 2000.9));
    EXPECT_EQ(tree.read(folder + "fan1_enable"), "0");
    EXPECT_EQ(tree.read(folder + "fan1_target"), "2000");
}

TEST(DriverKeys, AFileThatIsAbsentGivesNoKey) {
    DriverTree tree;
    tree.makeIntelLaptop();
    for (const char* file : {"/fan1_min", "/fan1_max", "/fan1_manual", "/fan2_output"}) {
        tree.remove(tree.device() + file);
    }
    SMC smc = open(tree);
    for (const char* key : {"F0Mn", "F0Mx", "F0Md", "F1Tg", "F1Md"}) {
        EXPECT_FALSE(smc.hasKey(key)) << key;
    }
    EXPECT_TRUE(smc.hasKey("F0Tg"));
    EXPECT_THAT(smc.readFans(), ElementsAre(FanReading{0, 1981, 0, 1981, 2000, false},
                                            FanReading{1, 2009, 2000, 6000, 2009}));
    EXPECT_FALSE(smc.setFanSpeed(0, 2500));
    EXPECT_FALSE(smc.setFanSpeed(1, 2500));
}

TEST(DriverKeys, OffersNeitherUnlockNorMaskKey) {
    DriverTree intel;
    intel.makeIntelLaptop();
    DriverTree apple;
    apple.makeAppleSiliconLaptop();
    for (const DriverTree* tree : {&intel, &apple}) {
        for (const char* key : {"FS! ", "Ftst", "F0md"}) {
            EXPECT_FALSE(open(*tree).hasKey(key)) << key;
        }
    }
}

TEST(DriverKeys, FansWithGapsKeepTheirNumbersUpToTen) {
    DriverTree tree;
    tree.makeIntelLaptop();
    tree.write(tree.device() + "/fan12_input", "1200\n");
    SMC smc = open(tree);
    EXPECT_EQ(smc.fanCount(), 10);
    EXPECT_EQ(smc.readFans().size(), 2U);
    EXPECT_FALSE(smc.hasKey("F11A"));
}

TEST(DriverKeys, ValuesAreCodedAsTheControllerWould) {
    DriverTree tree;
    tree.makeIntelLaptop();
    const auto described = [&](const std::string& file, const std::string& text, const char* key) {
        tree.write(tree.device() + "/" + file, text);
        return open(tree).describe(key);
    };
    EXPECT_EQ(described("temp6_input", "-127000\n", "TC0P"),
              "TC0P | type sp78 | 2 octets | 81 00 | valeur -127.00");
    EXPECT_EQ(described("temp6_input", "-40250\n", "TC0P"),
              "TC0P | type sp78 | 2 octets | D7 C0 | valeur -40.25");
    EXPECT_EQ(described("temp6_input", "127750\n", "TC0P"),
              "TC0P | type sp78 | 2 octets | 7F C0 | valeur 127.75");
    EXPECT_EQ(described("fan1_input", "16383\n", "F0Ac"),
              "F0Ac | type fpe2 | 2 octets | FF FC | valeur 16383.00");
    EXPECT_EQ(described("fan1_input", "20000\n", "F0Ac"),
              "F0Ac | type fpe2 | 2 octets | FF FC | valeur 16383.00");
    EXPECT_EQ(described("fan1_input", "-5\n", "F0Ac"), "F0Ac | type fpe2 | 2 octets | 00 00 | valeur 0.00");
    EXPECT_EQ(described("fan1_manual", "3\n", "F0Md"), "F0Md | type ui8  | 1 octets | 03 | valeur 3.00");
}

TEST(DriverKeys, OnlyTheFirstLineCountsAndItMustBeANumber) {
    DriverTree tree;
    tree.makeIntelLaptop();
    for (const auto& [text, value] : {std::pair<const char*, std::optional<double>>{"1500\n7\n", 1500},
                                      {"1500", 1500},
                                      {"", {}},
                                      {"\n", {}},
                                      {"1500 rpm\n", {}},
                                      {" 1500\n", {}},
                                      {"+1500\n", {}},
                                      {"0x10\n", {}},
                                      {"99999999999999999999\n", {}}}) {
        tree.write(tree.device() + "/fan1_input", text);
        EXPECT_EQ(open(tree).readValue("F0Ac"), value) << text;
    }
}

// How channels of the Apple Silicon driver, which are labelled in words, get their keys.
class DriverSensorTree : public testing::Test {
protected:
    // The key of a single channel with this label.
    std::string keyOf(const std::string& label) {
        std::vector<DriverSensor> sensors = {{1, label, {}}};
        nameDriverSensors(*files, "/hwmon", sensors);
        return sensors[0].key;
    }

    void addNode(const std::string& folder, const std::string& property, const std::string& label,
                 const std::string& key) {
        tree.write(folder + "/apple,key-id", key + '\0');
        tree.write(folder + "/" + property, label + '\0');
    }

    DriverTree tree;
    std::unique_ptr<DriverFiles> files = systemDriverFiles(tree.root());
};

TEST_F(DriverSensorTree, NodesMayBeGroupedDescribedOrBelowTheDevice) {
    addNode("hwmon/of_node/temperature-a", "label", "One Temp", "Tp01");
    addNode("hwmon/of_node/apple,temp-keys/b", "apple,key-desc", "Another Temp", "Tp02");
    addNode("hwmon/device/of_node/c", "label", "A third Temp", "Tp03");
    EXPECT_EQ(keyOf("One Temp"), "Tp01");
    EXPECT_EQ(keyOf("Another Temp"), "Tp02");
    EXPECT_EQ(keyOf("A third Temp"), "Tp03");
    EXPECT_TRUE(keyOf("One").starts_with("T~"));
}

TEST_F(DriverSensorTree, ALabelThatIsAKeyOverridesTheDeviceTree) {
    addNode("hwmon/of_node/a", "label", "TC0P", "Tp01");
    EXPECT_EQ(keyOf("TC0P"), "TC0P");
    for (const char* label : {"TC0", "TC0PX", "tC0P", "T\tab", "XC0P", "Té1"}) {
        EXPECT_TRUE(keyOf(label).starts_with("T~")) << label;
    }
}

TEST_F(DriverSensorTree, ANodeWithAnInvalidKeyIsIgnored) {
    addNode("hwmon/of_node/a", "label", "One Temp", "Tp0");
    addNode("hwmon/of_node/b", "label", "Two Temp", "PSTR");
    EXPECT_TRUE(keyOf("One Temp").starts_with("T~"));
    EXPECT_TRUE(keyOf("Two Temp").starts_with("T~"));
}

TEST_F(DriverSensorTree, WithoutATreeTheDriversOwnLabelsAreKnown) {
    EXPECT_EQ(keyOf("NAND Flash Temperature"), "TH0x");
    EXPECT_EQ(keyOf("Battery Hotspot"), "TB0T");
    EXPECT_EQ(keyOf("Charge Regulator Temp"), "TCHP");
    EXPECT_EQ(keyOf("WiFi/BT Module Temp"), "TW0P");
}

TEST_F(DriverSensorTree, ASecondChannelOfAKeyGetsOneOfItsOwn) {
    std::vector<DriverSensor> sensors = {
        {1, "TC0P", {}}, {2, "TC0P", {}}, {3, "SoC die Tf04", {}}, {4, "Tf04", {}}};
    nameDriverSensors(*files, "/hwmon", sensors);
    EXPECT_EQ(sensors[0].key, "TC0P");
    EXPECT_EQ(sensors[1].key, syntheticKey(syntheticKeyNumber("TC0P")));
    EXPECT_EQ(sensors[2].key, "Tf04");
    EXPECT_EQ(sensors[3].key, syntheticKey(syntheticKeyNumber("Tf04")));
}

TEST_F(DriverSensorTree, TwoLabelsOfOneNumberGetNeighbouringKeys) {
    std::vector<DriverSensor> sensors = {{1, "Same words", {}}, {2, "Same words", {}}, {3, std::nullopt, {}}};
    nameDriverSensors(*files, "/hwmon", sensors);
    const unsigned first = syntheticKeyNumber("Same words");
    EXPECT_EQ(sensors[0].key, syntheticKey(first));
    EXPECT_EQ(sensors[1].key, syntheticKey((first + 1) % 3844));
    EXPECT_EQ(sensors[2].key, syntheticKey(syntheticKeyNumber("temp3")));
}

TEST_F(DriverSensorTree, OnlyTheDieLabelEndsInItsKey) {
    EXPECT_EQ(keyOf("SoC die Tf04"), "Tf04");
    EXPECT_TRUE(keyOf("Some other Temp").starts_with("T~"));
}

TEST(DriverSensorKeys, KeysOfOurOwnAreTwoDigitsOfBaseSixtyTwo) {
    EXPECT_EQ(syntheticKeyNumber(""), 2166136261U % 3844);
    EXPECT_EQ(syntheticKeyNumber("a"), 0xE40C292CU % 3844); // a published value of the hash
    EXPECT_EQ(syntheticKeyNumber("foobar"), 0xBF9CF968U % 3844);
    EXPECT_EQ(syntheticKey(0), "T~00");
    EXPECT_EQ(syntheticKey(61), "T~0z");
    EXPECT_EQ(syntheticKey(62), "T~10");
    EXPECT_EQ(syntheticKey(3843), "T~zz");
    EXPECT_EQ(syntheticKey(syntheticKeyNumber("SoC Backside Temp")), "T~Gk");
}

} // namespace

} // namespace Fenwhirl
