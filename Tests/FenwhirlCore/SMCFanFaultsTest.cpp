// Fan writes on a controller that fails once: at each request in turn, and between any two writes.

#include "Support/ScriptedSMC.h"

#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

using namespace std::chrono_literals;

enum class Firmware { older, newer, both };

void addFans(ScriptedSMC& controller, Firmware firmware) {
    if (firmware == Firmware::older) {
        controller.addOlderFans(2);
    } else {
        controller.addUnlockableFans(2);
    }
    if (firmware == Firmware::both) {
        controller.setNumber("FS! ", "ui16", 0);
    }
}

bool isAutomatic(const ScriptedSMC& controller) {
    bool isClean = !controller.has("FS! ") || controller.number("FS! ") == 0;
    isClean = isClean && (!controller.has("Ftst") || controller.number("Ftst") == 0);
    for (const char* key : {"F0Md", "F1Md"}) {
        isClean = isClean && (!controller.has(key) || controller.number(key) == 0);
    }
    return isClean;
}

class SMCFanFaults : public testing::TestWithParam<Firmware> {
protected:
    // The number of requests that an undisturbed run makes.
    template <typename Operation>
    std::size_t countRequests(Operation operation) {
        ScriptedSMC controller;
        addFans(controller, GetParam());
        SMC smc = controller.open();
        operation(smc);
        return controller.requests.size();
    }
};

TEST_P(SMCFanFaults, ASpeedSurvivesOneLostReplyAtAnyPlace) {
    const std::size_t count = countRequests([](SMC& smc) { static_cast<void>(smc.setFanSpeed(0, 2500)); });
    for (std::size_t lost = 0; lost < count; ++lost) {
        ScriptedSMC controller;
        addFans(controller, GetParam());
        controller.hook = [&](const SMCParam&) -> std::optional<ScriptedSMC::Reply> {
            if (controller.requests.size() == lost + 1) {
                return ScriptedSMC::Reply();
            }
            return std::nullopt;
        };
        SMC smc = controller.open();
        const bool succeeded = smc.setFanSpeed(0, 2500);
        // Success implies the target. Without manual mode it means that a mode key seemed to be missing.
        EXPECT_TRUE(!succeeded || controller.number("F0Tg") == 2500) << lost;
        const bool isManual = !controller.has("F0Md") || controller.number("F0Md") == 1;
        EXPECT_TRUE(!succeeded || isManual || controller.requests[lost].data8 == SMCCommand::keyInfo) << lost;
        EXPECT_LE(controller.waited, 4s) << lost;
        EXPECT_TRUE(smc.resetFans()) << lost;
        EXPECT_TRUE(isAutomatic(controller)) << lost;
    }
}

TEST_P(SMCFanFaults, OneHandBackRepairsADeathBetweenAnyTwoRequests) {
    const std::size_t count = countRequests([](SMC& smc) { static_cast<void>(smc.setFanSpeed(1, 2500)); });
    for (std::size_t death = 0; death <= count; ++death) {
        ScriptedSMC controller;
        addFans(controller, GetParam());
        controller.diesAtRequest = death;
        SMC smc = controller.open();
        EXPECT_EQ(smc.setFanSpeed(1, 2500), death >= count) << death;
        // Manual only with a target that was valid before or is valid now.
        EXPECT_TRUE(controller.number("F1Tg") == 2000 || controller.number("F1Tg") == 2500);
        controller.diesAtRequest.reset();
        SMC another = controller.open();
        EXPECT_TRUE(another.resetFans()) << death;
        EXPECT_TRUE(isAutomatic(controller)) << death;
    }
}

TEST_P(SMCFanFaults, ADeathInAHandBackIsNeverCalledASuccess) {
    ScriptedSMC whole;
    addFans(whole, GetParam());
    SMC first = whole.open();
    ASSERT_TRUE(first.setFanSpeed(0, 2500) && first.setFanSpeed(1, 2500));
    const std::size_t before = whole.requests.size();
    ASSERT_TRUE(first.resetFans());
    const std::size_t count = whole.requests.size() - before;
    for (std::size_t death = 0; death < count; ++death) {
        ScriptedSMC controller;
        addFans(controller, GetParam());
        SMC smc = controller.open();
        ASSERT_TRUE(smc.setFanSpeed(0, 2500) && smc.setFanSpeed(1, 2500));
        controller.diesAtRequest = controller.requests.size() + death;
        EXPECT_FALSE(smc.resetFans()) << death;
        controller.diesAtRequest.reset();
        SMC another = controller.open();
        EXPECT_TRUE(another.resetFans()) << death;
        EXPECT_TRUE(isAutomatic(controller)) << death;
    }
}

TEST_P(SMCFanFaults, EveryWriteRefusedInTurnHasItsOutcome) {
    struct Outcome {
        const char* key;
        bool setSucceeds;
        bool resetSucceeds;
    };

    const bool isNewer = GetParam() != Firmware::older;
    for (const Outcome& outcome : {Outcome{"FS! ", true, false}, Outcome{"Ftst", false, true},
                                   Outcome{"F0Md", false, false}, Outcome{"F0Tg", false, true}}) {
        ScriptedSMC controller;
        addFans(controller, GetParam());
        if (!controller.has(outcome.key)) {
            continue;
        }
        controller.at(outcome.key).writeResult = SMCResult::notWritable;
        SMC smc = controller.open();
        EXPECT_EQ(smc.setFanSpeed(0, 2500), outcome.setSucceeds) << outcome.key;
        EXPECT_EQ(smc.resetFan(0), outcome.resetSucceeds) << outcome.key;
        const bool isModeInvolved =
            isNewer && (std::string_view(outcome.key) == "Ftst" || std::string_view(outcome.key) == "F0Md");
        EXPECT_EQ(controller.waited, isModeInvolved ? 4s : 0s) << outcome.key;
    }
}

TEST_P(SMCFanFaults, AProcessWithoutPrivilegeChangesNothing) {
    ScriptedSMC controller;
    addFans(controller, GetParam());
    controller.hook = [](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 == SMCCommand::writeKey) {
            return ScriptedSMC::Reply(); // the kernel refuses: there is no record
        }
        return std::nullopt;
    };
    SMC smc = controller.open();
    EXPECT_FALSE(smc.setFanSpeed(0, 2500));
    EXPECT_FALSE(smc.resetFan(0));
    EXPECT_EQ(smc.readFans().size(), 2U);
    EXPECT_TRUE(isAutomatic(controller));
}

TEST_P(SMCFanFaults, TwoConnectionsAlwaysAgree) {
    ScriptedSMC controller;
    addFans(controller, GetParam());
    SMC one = controller.open();
    SMC other = controller.open();
    ASSERT_TRUE(one.setFanSpeed(0, 2500));
    ASSERT_TRUE(other.setFanSpeed(1, 3000));
    EXPECT_EQ(one.readFans(), other.readFans());
    EXPECT_TRUE(one.resetFan(1));
    EXPECT_TRUE(other.resetFan(0));
    EXPECT_TRUE(isAutomatic(controller));
}

std::string nameOf(const testing::TestParamInfo<Firmware>& parameter) {
    switch (parameter.param) {
    case Firmware::older:
        return "older";
    case Firmware::newer:
        return "newer";
    default:
        return "both";
    }
}

INSTANTIATE_TEST_SUITE_P(Firmware, SMCFanFaults,
                         testing::Values(Firmware::older, Firmware::newer, Firmware::both), nameOf);

} // namespace

} // namespace Fenwhirl
