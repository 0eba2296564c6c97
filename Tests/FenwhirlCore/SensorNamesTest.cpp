#include "FenwhirlCore/SensorNames.h"

#include <gtest/gtest.h>
#include <set>

namespace {

using SensorNames::friendly;

TEST(SensorNames, WellKnownKeysHaveTheirOwn) {
    EXPECT_EQ(friendly("TC0P"), "Processeur (proximité)");
    EXPECT_EQ(friendly("TCXC"), "Processeur (PECI)");
    EXPECT_EQ(friendly("TH0A"), "Disque SSD");
    EXPECT_EQ(friendly("TH0a"), "Disque SSD");
    EXPECT_EQ(friendly("TH0P"), "Disque SSD");
    EXPECT_EQ(friendly("TG0D"), friendly("TGDD"));
    EXPECT_EQ(friendly("Tp0P"), "Alimentation");
    EXPECT_EQ(friendly("Ts0S"), "Surface");
    EXPECT_EQ(friendly("TN0D"), "Chipset (diode)");
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
    for (const char* key : {"TC/C", "TC:C", "TC C", "TC1c", "TC11C", "Tc1C"})
        EXPECT_EQ(friendly(key), std::string("Capteur ") + key);
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

TEST(SensorNames, TheListsHoldEachKeyOnce) {
    using Keys = std::set<std::string_view>;
    EXPECT_EQ(Keys(SensorNames::primaryKeys.begin(), SensorNames::primaryKeys.end()).size(), 12U);
    EXPECT_EQ(Keys(SensorNames::featuredKeys.begin(), SensorNames::featuredKeys.end()).size(), 19U);
    EXPECT_EQ(SensorNames::primaryKeys.front(), "TCXC");
    EXPECT_EQ(SensorNames::featuredKeys.back(), "Tg0f");
}

} // namespace
