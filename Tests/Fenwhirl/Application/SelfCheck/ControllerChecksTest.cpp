#include "Fenwhirl/Application/SelfCheck/ControllerChecks.h"

#include "Support/ScriptedSMC.h"

#include <gmock/gmock.h>

namespace Fenwhirl {

using testing::Each;
using testing::Pair;

namespace {

using Outcome = CheckResult::Outcome;

class ControllerChecksTest : public testing::Test {
protected:
    ScriptedSMC controller;
    bool isThere = true;
    bool isRoot = false;

    ControllerChecksTest() {
        controller.addOlderFans(2);
        controller.setNumber("TC0P", "sp78", 55);
        // As the kernel does with whoever is not root.
        refuseWrites = [](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
            if (request.data8 == SMCCommand::writeKey) {
                return ScriptedSMC::Reply();
            }
            return std::nullopt;
        };
        controller.hook = refuseWrites;
    }

    std::map<QString, CheckResult> run() {
        ControllerChecks checks([this] { return isThere ? controller.connect() : nullptr; }, isRoot);
        std::map<QString, CheckResult> results;
        for (const SelfCheck& check : checks.checks()) {
            results.emplace(check.name, check.run());
        }
        return results;
    }

    CheckResult of(const char* name) { return run().at(QString::fromLatin1(name)); }

    ScriptedSMC::Hook refuseWrites;
};

MATCHER_P(HasOutcome, outcome, "") {
    *result_listener << arg.detail.toStdString();
    return arg.outcome == outcome;
}

} // namespace

TEST_F(ControllerChecksTest, AHealthyControllerPassesEverything) {
    EXPECT_THAT(run(), Each(Pair(testing::_, HasOutcome(Outcome::pass))));
}

TEST_F(ControllerChecksTest, EveryCommandOfTheProtocolIsAsked) {
    static_cast<void>(run());
    std::set<int> asked;
    for (const SMCParam& request : controller.requests) {
        asked.insert(request.data8);
    }
    EXPECT_THAT(asked, testing::ElementsAre(SMCCommand::readKey, SMCCommand::writeKey, SMCCommand::keyByIndex,
                                            SMCCommand::keyInfo));
}

TEST_F(ControllerChecksTest, WithoutAControllerOneFailsAndTheOthersAreLeftOut) {
    isThere = false;
    for (const auto& [name, result] : run()) {
        EXPECT_EQ(result.outcome, name == QStringLiteral("SMC opened") ? Outcome::fail : Outcome::skip)
            << name.toStdString();
    }
}

TEST_F(ControllerChecksTest, ACommandThatFailsIsNamed) {
    controller.hook = [this](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 == SMCCommand::keyByIndex) {
            return ScriptedSMC::Reply();
        }
        return refuseWrites(request);
    };
    EXPECT_EQ(of("SMC key by index").outcome, Outcome::fail);
    EXPECT_EQ(of("SMC keys").outcome, Outcome::fail);
    EXPECT_EQ(of("SMC key info").outcome, Outcome::pass);
    controller.hook = [](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 != SMCCommand::readKey) {
            return std::nullopt;
        }
        SMCParam answer{};
        answer.result = SMCResult::notReadable;
        return answer;
    };
    EXPECT_EQ(of("SMC read key"), CheckResult::fail(QStringLiteral("the controller answered 0x85")));
}

TEST_F(ControllerChecksTest, AWriteThatIsAcceptedFromAnybodyIsAFailureAndChangesNothing) {
    controller.hook = nullptr;
    EXPECT_EQ(of("SMC write refused").outcome, Outcome::fail);
    ASSERT_EQ(controller.writes.size(), 1U);
    EXPECT_EQ(controller.writes[0].key, "FS! ");
    EXPECT_EQ(controller.number("FS! "), 0);
}

TEST_F(ControllerChecksTest, RootWritesNothing) {
    isRoot = true;
    EXPECT_EQ(of("SMC write refused").outcome, Outcome::skip);
    EXPECT_TRUE(controller.writes.empty());
}

TEST_F(ControllerChecksTest, WithoutATemperatureNothingIsWell) {
    controller.remove("TC0P");
    EXPECT_EQ(of("temperatures").outcome, Outcome::fail);
}

TEST_F(ControllerChecksTest, FansAreTold) {
    EXPECT_TRUE(of("fans").detail.startsWith(
        QStringLiteral("fan 0: 2000 rpm of 1200 to 6000, automatic; fan 1: 2000 rpm of 1200 to 6000, ")));
    controller.setNumber("FS! ", "ui16", 2);
    EXPECT_TRUE(of("fans").detail.contains(QStringLiteral("fan 1: 2000 rpm of 1200 to 6000, manual")));
    controller.remove("F1Ac");
    EXPECT_EQ(of("fans").outcome, Outcome::fail);
    controller.setNumber("FNum", "ui8 ", 0);
    EXPECT_EQ(of("fans"), CheckResult::pass(QStringLiteral("this Mac has none")));
}

TEST_F(ControllerChecksTest, ANumberOfFansThatIsNoneDoesNotEndTheProcess) {
    controller.set("FNum", "flt ", {0, 0, 0xC0, 0x7F});
    EXPECT_EQ(of("fans").outcome, Outcome::fail);
}

} // namespace Fenwhirl
