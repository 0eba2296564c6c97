#include "FenwhirlCore/SensorNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace Fenwhirl {

namespace {

using SensorNames::friendly;

// Names that users know. They must not change when others are added.
TEST(SensorNames, WellKnownKeysHaveTheirOwn) {
    static const std::vector<std::pair<std::string, std::string>> names = {
        {"TC0P", "Processeur (proximité)"},
        {"TC0D", "Processeur (diode)"},
        {"TC0E", "Processeur (E)"},
        {"TC0F", "Processeur (F)"},
        {"TC0H", "Processeur (radiateur)"},
        {"TCXC", "Processeur (PECI)"},
        {"TCGC", "Graphisme (PECI)"},
        {"TCSA", "Système (PECI)"},
        {"TG0P", "Graphisme"},
        {"TG0D", "Graphisme (diode)"},
        {"TG0H", "Graphisme (radiateur)"},
        {"TGDD", "Graphisme (diode)"},
        {"TM0P", "Mémoire"},
        {"TM0S", "Mémoire (module)"},
        {"Th0H", "Radiateur"},
        {"TH0A", "Disque SSD"},
        {"TH0a", "Disque SSD"},
        {"TH0B", "Disque SSD 2"},
        {"TH0b", "Disque SSD 2"},
        {"TH0P", "Disque SSD"},
        {"Ts0P", "Repose-mains"},
        {"Ts1P", "Repose-mains 2"},
        {"Ts0S", "Surface"},
        {"TaLP", "Air (gauche)"},
        {"TaRF", "Air (droite)"},
        {"TA0P", "Air ambiant"},
        {"TB0T", "Batterie"},
        {"TB1T", "Batterie 2"},
        {"TB2T", "Batterie 3"},
        {"TW0P", "Wi-Fi"},
        {"Tp0P", "Alimentation"},
        {"TPCD", "Contrôleur de plateforme"},
        {"TL0P", "Écran"},
        {"TN0P", "Chipset"},
        {"TN0D", "Chipset (diode)"},
    };
    std::vector<std::string> keys;
    for (const auto& [key, name] : names) {
        EXPECT_EQ(friendly(key), name) << key;
        keys.push_back(key);
    }
    EXPECT_THAT(SensorNames::wellKnownKeys(), testing::UnorderedElementsAreArray(keys));
}

TEST(SensorNames, WellKnownKeysAreKnownInTheirOwnSpellingOnly) {
    EXPECT_EQ(friendly("tc0p"), "Capteur tc0p");
    EXPECT_EQ(friendly("TC0p"), "Capteur TC0p");
    EXPECT_EQ(friendly("TC0P "), "Capteur TC0P ");
    EXPECT_EQ(friendly("TH0A"), friendly("TH0a")); // different keys with the same name
}

TEST(SensorNames, CoresAreNumbered) {
    EXPECT_EQ(friendly("TC1C"), "Cœur CPU 1");
    EXPECT_EQ(friendly("TC0C"), "Cœur CPU 0");
    EXPECT_EQ(friendly("TC9C"), "Cœur CPU 9");
    EXPECT_EQ(friendly("TCAC"), "Capteur TCAC");
    EXPECT_EQ(friendly("TC1c"), "Capteur TC1c");
    EXPECT_EQ(friendly("TC1CC"), "Capteur TC1CC");
}

TEST(SensorNames, FamiliesAreNamedByTheirPrefix) {
    EXPECT_EQ(friendly("Tp0D"), "Cœur performance 0D");
    EXPECT_EQ(friendly("Tf04"), "Cœur performance 04");
    EXPECT_EQ(friendly("Te05"), "Cœur efficacité 05");
    EXPECT_EQ(friendly("Tg0f"), "Graphisme 0f");
    EXPECT_EQ(friendly("Tm02"), "Mémoire 02");
    EXPECT_EQ(friendly("Ts2P"), "Surface 2P");
    EXPECT_EQ(friendly("Tb01"), "Batterie 01");
}

TEST(SensorNames, TheRestAreSensors) {
    EXPECT_EQ(friendly("TZ9X"), "Capteur TZ9X");
    EXPECT_EQ(friendly("TG1P"), "Capteur TG1P");
    EXPECT_EQ(friendly("TB3T"), "Capteur TB3T");
    EXPECT_EQ(friendly("tp01"), "Capteur tp01");
    for (const char* key : {"TC/C", "TC:C", "TC C", "TC1c", "TC11C", "Tc1C"}) {
        EXPECT_EQ(friendly(key), std::string("Capteur ") + key);
    }
}

TEST(SensorNames, AnyTextHasAName) {
    EXPECT_EQ(friendly(""), "Capteur ");
    EXPECT_EQ(friendly("T"), "Capteur T");
    EXPECT_EQ(friendly("Tb"), "Batterie ");
    EXPECT_EQ(friendly("Tp"), "Cœur performance ");
    EXPECT_EQ(friendly("Tp1"), "Cœur performance 1");
    EXPECT_EQ(friendly("Tp1234"), "Cœur performance 1234");
    EXPECT_EQ(friendly("Té01"), "Capteur Té01");
    EXPECT_EQ(friendly("\xFF\xFE"), "Capteur \xFF\xFE");
}

TEST(SensorNames, ThePreferredProcessorTemperaturesAreInTheirOrder) {
    EXPECT_THAT(SensorNames::primaryKeys,
                testing::ElementsAre("TCXC", "TC0P", "TC0E", "TC0F", "TC0D", "TC0H", "Tp01", "Tp05", "Tp09",
                                     "Tp0D", "Tp0T", "Tp0b"));
}

TEST(SensorNames, TheSensorsThatAreShownFirstAreInTheirOrder) {
    EXPECT_THAT(SensorNames::featuredKeys,
                testing::ElementsAre("TC0P", "TCXC", "TC1C", "TC2C", "TCGC", "TG0P", "TGDD", "TM0P", "TH0A",
                                     "TH0a", "TB0T", "Ts0P", "Th0H", "TaLP", "Tp01", "Tp09", "Te05", "Tg05",
                                     "Tg0f"));
}

} // namespace

} // namespace Fenwhirl
