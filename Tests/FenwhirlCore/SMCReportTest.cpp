#include "FenwhirlCore/Platform/SystemText.h"
#include "Support/ScriptedSMC.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <unistd.h>

namespace Fenwhirl {

namespace {

using namespace std::chrono_literals;

class SomeMac final : public SystemText {
public:
    bool value(std::string_view name, char* buffer, std::size_t& size) const override {
        const std::string text =
            name == "hw.model" ? std::string("Mac14,3\0", 8) : std::string("Apple M2 Pro\0", 13);
        size = text.size();
        if (buffer != nullptr) {
            std::memcpy(buffer, text.data(), text.size());
        }
        return true;
    }

    bool isTranslated() const override { return true; }

    std::string version() const override { return "Version 14.5 (Build 23F79)"; }
};

class SMCReport : public testing::Test {
protected:
    ScriptedSMC controller;
    SMC smc = controller.open();
};

TEST_F(SMCReport, DescribesTheMachineItsFansAndItsTemperatures) {
    controller.addOlderFans(1);
    controller.setNumber("F0Md", "ui8 ", 1);
    controller.set("F0ID", "{fds", {0x00, 0xAB});
    controller.setNumber("TC0P", "sp78", 47.5);
    controller.setNumber("TBad", "flt ", 200);
    controller.setNumber("TCnt", "ui8 ", 3);
    EXPECT_EQ(smc.diagnosticReport(SomeMac()), "Fenwhirl : rapport de diagnostic\n"
                                               "Modèle du Mac : Mac14,3\n"
                                               "Processeur : Apple M2 Pro\n"
                                               "Programme : arm64 (natif Apple)\n"
                                               "Lancé via Rosetta : oui\n"
                                               "macOS : Version 14.5 (Build 23F79)\n"
                                               "Nombre de clés SMC : 11\n"
                                               "Nombre de ventilateurs (FNum) : 1\n"
                                               "\n"
                                               "-- Clés des ventilateurs (F…) --\n"
                                               "FNum | type ui8  | 1 octets | 01 | valeur 1.00\n"
                                               "FS!  | type ui16 | 2 octets | 00 00 | valeur 0.00\n"
                                               "F0Ac | type fpe2 | 2 octets | 1F 40 | valeur 2000.00\n"
                                               "F0Mn | type fpe2 | 2 octets | 12 C0 | valeur 1200.00\n"
                                               "F0Mx | type fpe2 | 2 octets | 5D C0 | valeur 6000.00\n"
                                               "F0Tg | type fpe2 | 2 octets | 1F 40 | valeur 2000.00\n"
                                               "F0Md | type ui8  | 1 octets | 01 | valeur 1.00\n"
                                               "F0ID | type {fds | 2 octets | 00 AB | valeur ?\n"
                                               "\n"
                                               "-- Températures (T…) --\n"
                                               "TC0P | type sp78 | 2 octets | 2F 80 | valeur 47.50\n"
                                               "TBad | type flt  | 4 octets | 00 00 48 43 | valeur 200.00\n"
                                               "Total : 2 capteurs de température");
}

TEST_F(SMCReport, ShowsWhatCannotBeReadInItsPlace) {
    controller.setNumber("F0Ac", "fpe2", 2000);
    controller.at("F0Ac").readResult = SMCResult::notReadable;
    controller.setNumber("TC0P", "sp78", 40);
    controller.at("TC0P").readResult = SMCResult::notReadable;
    const std::string report = smc.diagnosticReport(SomeMac());
    EXPECT_NE(report.find("\nF0Ac : illisible\n"), std::string::npos);
    EXPECT_EQ(report.find("TC0P"), std::string::npos);
    EXPECT_NE(report.find("\nNombre de ventilateurs (FNum) : 0\n"), std::string::npos);
    EXPECT_TRUE(report.ends_with("\nTotal : 0 capteurs de température"));
}

TEST_F(SMCReport, OfADeadControllerHasItsHeadings) {
    controller.diesAtRequest = 0;
    EXPECT_TRUE(smc.diagnosticReport(SomeMac()).ends_with(
        "Nombre de clés SMC : 0\nNombre de ventilateurs (FNum) : 0\n\n"
        "-- Clés des ventilateurs (F…) --\n\n-- Températures (T…) --\n"
        "Total : 0 capteurs de température"));
}

TEST_F(SMCReport, LinesShowTypesAndValuesAsTheyAre) {
    controller.set("KEYS", std::string("fl\0t", 4), {1});
    EXPECT_EQ(smc.describe("KEYS"), std::string("KEYS | type fl\0t | 1 octets | 01 | valeur ?", 43));
    controller.set("KEYS", "\xFFlt ", {1});
    EXPECT_EQ(smc.describe("KEYS"), "KEYS | type  | 1 octets | 01 | valeur ?");
    controller.set("KEYS", "flt ", {0, 0, 0xC0, 0xFF});
    EXPECT_EQ(smc.describe("KEYS"), "KEYS | type flt  | 4 octets | 00 00 C0 FF | valeur nan");
    controller.set("KEYS", "flt ", {});
    EXPECT_EQ(smc.describe("KEYS"), "KEYS | type flt  | 0 octets |  | valeur ?");
    controller.set("KEYS", "hex_", ScriptedSMC::Bytes(40, 0xAB));
    EXPECT_NE(smc.describe("KEYS").find(" | 32 octets | AB AB"), std::string::npos);
    EXPECT_EQ(smc.describe("none"), "none : illisible");
}

TEST_F(SMCReport, OfThisComputerNamesIt) {
    const std::string report = smc.diagnosticReport();
    EXPECT_TRUE(report.starts_with("Fenwhirl : rapport de diagnostic\nModèle du Mac : "));
    EXPECT_EQ(report.find("macOS : \n"), std::string::npos);
}

class FanWriteTest : public SMCReport {};

TEST_F(FanWriteTest, WithoutRootWritesNothing) {
    controller.addUnlockableFans(1);
    EXPECT_EQ(smc.fanWriteTest(501), "Test impossible : droits administrateur absents.");
    EXPECT_TRUE(controller.requests.empty());
    if (geteuid() != 0) {
        EXPECT_EQ(smc.fanWriteTest(), "Test impossible : droits administrateur absents.");
    }
}

TEST_F(FanWriteTest, WithoutFansSaysSo) {
    EXPECT_EQ(smc.fanWriteTest(0), "Aucun ventilateur sur ce Mac.");
}

TEST_F(FanWriteTest, DrivesTheFirstFanForSixSecondsAndHandsAllBack) {
    controller.addUnlockableFans(2);
    controller.setNumber("F1Md", "ui8 ", 1);
    EXPECT_EQ(smc.fanWriteTest(0), "Ventilateur 0 : minimum 1200, maximum 6000, objectif du test 2640\n"
                                   "Écriture acceptée : oui\n"
                                   "Seconde 1 : vitesse réelle 2000, cible 2640\n"
                                   "Seconde 2 : vitesse réelle 2000, cible 2640\n"
                                   "Seconde 3 : vitesse réelle 2000, cible 2640\n"
                                   "Seconde 4 : vitesse réelle 2000, cible 2640\n"
                                   "Seconde 5 : vitesse réelle 2000, cible 2640\n"
                                   "Seconde 6 : vitesse réelle 2000, cible 2640\n"
                                   "Retour en automatique : oui, cible après 2640");
    EXPECT_EQ(controller.waited, 8s);
    EXPECT_EQ(controller.number("F0Md"), 0);
    EXPECT_EQ(controller.number("F1Md"), 0);
    EXPECT_EQ(controller.number("Ftst"), 0);
}

TEST_F(FanWriteTest, TestsTheFirstFanThatCanBeRead) {
    controller.addOlderFans(3);
    controller.remove("F0Ac");
    controller.setNumber("FS! ", "ui16", 0b101);
    EXPECT_TRUE(smc.fanWriteTest(0).starts_with("Ventilateur 1 : "));
    EXPECT_EQ(controller.number("FS! "), 0);
}

TEST_F(FanWriteTest, ShowsARefusalAndStillHandsBack) {
    controller.addUnlockableFans(1);
    controller.setNumber("F0Md", "ui8 ", 1);
    controller.at("F0Tg").writeResult = SMCResult::notWritable;
    const std::string text = smc.fanWriteTest(0);
    EXPECT_NE(text.find("Écriture acceptée : non\n"), std::string::npos);
    EXPECT_NE(text.find("Retour en automatique : oui"), std::string::npos);
    EXPECT_EQ(controller.number("F0Md"), 0);
}

TEST_F(FanWriteTest, HandsEveryFanBackAfterOneThatRefuses) {
    controller.addUnlockableFans(3);
    for (const char* key : {"F0Md", "F1Md", "F2Md"}) {
        controller.setNumber(key, "ui8 ", 1);
    }
    controller.at("F1Md").writeResult = SMCResult::notWritable;
    EXPECT_NE(smc.fanWriteTest(0).find("Retour en automatique : non"), std::string::npos);
    EXPECT_EQ(controller.number("F0Md"), 0);
    EXPECT_EQ(controller.number("F1Md"), 1);
    EXPECT_EQ(controller.number("F2Md"), 0);
}

TEST_F(FanWriteTest, ShowsNonFiniteNumbersAsQuestionMarks) {
    controller.addUnlockableFans(1);
    controller.setNumber("F0Mx", "flt ", std::numeric_limits<double>::quiet_NaN());
    const std::string text = smc.fanWriteTest(0);
    EXPECT_TRUE(text.starts_with(
        "Ventilateur 0 : minimum 1200, maximum ?, objectif du test ?\nÉcriture acceptée : non\n"));
    EXPECT_EQ(controller.number("F0Tg"), 2000);
}

// After the first write, nothing may keep the test from handing the fans back.
TEST_F(FanWriteTest, SurvivesAnythingThatBecomesUnusableAfterItsWrites) {
    for (const std::string victim : {"FNum", "FS! ", "F0Ac"}) {
        ScriptedSMC fresh;
        fresh.addUnlockableFans(2);
        fresh.setNumber("FS! ", "ui16", 0);
        bool isBroken = false;
        fresh.hook = [&](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
            if (!isBroken && request.data8 == SMCCommand::writeKey && request.key == SMC::fourCC("F0Tg")) {
                isBroken = true;
                fresh.setNumber(victim, "flt ", std::numeric_limits<double>::quiet_NaN());
            }
            return std::nullopt;
        };
        SMC connection = fresh.open();
        const std::string text = connection.fanWriteTest(0);
        EXPECT_EQ(fresh.number("F0Md"), 0) << victim;
        EXPECT_EQ(fresh.number("Ftst"), 0) << victim;
        EXPECT_NE(text.find(std::string("Retour en automatique : ") + (victim == "FS! " ? "non" : "oui")),
                  std::string::npos)
            << victim << '\n'
            << text;
        if (victim == "F0Ac") {
            EXPECT_NE(text.find("vitesse réelle ?, cible 2640\n"), std::string::npos);
        }
    }
}

TEST_F(FanWriteTest, HandsBackTheFansItReadWhenTheCountVanishes) {
    controller.addUnlockableFans(2);
    controller.setNumber("F1Md", "ui8 ", 1);
    controller.hook = [&](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 == SMCCommand::writeKey && request.key == SMC::fourCC("F0Tg")) {
            controller.remove("FNum");
        }
        return std::nullopt;
    };
    EXPECT_NE(smc.fanWriteTest(0).find("Retour en automatique : oui"), std::string::npos);
    EXPECT_EQ(controller.number("F0Md"), 0);
    EXPECT_EQ(controller.number("F1Md"), 0);
}

TEST_F(FanWriteTest, DoesNotTryBillionsOfFansOnADeadController) {
    controller.addOlderFans(1);
    controller.hook = [&](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 == SMCCommand::writeKey && request.key == SMC::fourCC("F0Tg")) {
            controller.set("FNum", "ui32", {0xFF, 0xFF, 0xFF, 0xFF});
        }
        if (request.data8 == SMCCommand::readKey && request.key == SMC::fourCC("FNum") &&
            !controller.writes.empty()) {
            controller.diesAtRequest = controller.requests.size();
        }
        return std::nullopt;
    };
    EXPECT_NE(smc.fanWriteTest(0).find("Retour en automatique : non"), std::string::npos);
    EXPECT_LT(controller.requests.size(), 100U);
}

TEST_F(FanWriteTest, ReportsFailureWhenTheControllerDiesAtAnyRequest) {
    ScriptedSMC whole;
    whole.addUnlockableFans(2);
    SMC first = whole.open();
    static_cast<void>(first.fanWriteTest(0));
    const std::size_t requests = whole.requests.size();
    ASSERT_GT(requests, 60U);
    for (std::size_t death = 0; death < requests; ++death) {
        ScriptedSMC fresh;
        fresh.addUnlockableFans(2);
        fresh.diesAtRequest = death;
        SMC connection = fresh.open();
        const std::string text = connection.fanWriteTest(0);
        if (death < 4) {
            EXPECT_EQ(text, "Aucun ventilateur sur ce Mac.") << death;
            continue;
        }
        EXPECT_EQ(std::ranges::count(text, '\n'), 8) << death;
        // Only the last reading comes after the hand-back.
        const bool isHandedBack = death >= requests - 2;
        EXPECT_NE(text.find(std::string("Retour en automatique : ") + (isHandedBack ? "oui" : "non") +
                            ", cible après ?"),
                  std::string::npos)
            << death << '\n'
            << text;
        // Once the controller answers again, a reset repairs whatever is left.
        fresh.diesAtRequest.reset();
        EXPECT_TRUE(connection.resetFans());
        EXPECT_EQ(fresh.number("F0Md"), 0) << death;
        EXPECT_EQ(fresh.number("Ftst"), 0) << death;
    }
}

} // namespace

} // namespace Fenwhirl
