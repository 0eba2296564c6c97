#include "Fenwhirl/Application/SelfCheck/HelperChecks.h"

#include "Support/ScriptedSMC.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <set>

namespace Fenwhirl {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Outcome = CheckResult::Outcome;
using Command = std::vector<std::string>;

// "set" of "helper set", "before" of "fans as before".
QString shortName(const QString& name) {
    return name.section(u' ', -1);
}

// A helper that does to the scripted controller what the real one does.
class HelperChecksTest : public testing::Test {
protected:
    ScriptedSMC controller;
    std::optional<FileStatus> file = FileStatus{
        .kind = FileStatus::Kind::regular, .owner = 0, .permissions = 04755, .modified = {}, .changed = {}};
    std::string version = "3";
    bool isOnlyInstance = true;
    std::set<std::string> refused;  // commands
    int refusals = 1000;            // how many of them
    std::vector<std::string> story; // what happened, in order
    std::vector<Command> commands;

    HelperChecksTest() {
        controller.addOlderFans(2);
        controller.setNumber("TC0P", "sp78", 55);
    }

    HelperChecks::Services services() {
        return {.path = "/helper",
                .status = [this] { return file; },
                .version =
                    [this] {
                        story.emplace_back("version");
                        return std::optional(version);
                    },
                .run = [this](const Command& command) { return runHelper(command); },
                .openSMC = [this] { return std::make_unique<SMC>(controller.connect()); },
                .becomeOnlyInstance = [this]() -> std::shared_ptr<void> {
                    return isOnlyInstance ? std::make_shared<int>() : nullptr;
                },
                .announce =
                    [this](const HandBack& handBack) {
                        EXPECT_EQ(handBack.scope, HandBack::Scope::indices);
                        story.push_back("announce " + std::to_string(handBack.indices.at(0)));
                    },
                .keepAlive = [] {},
                .finish = [this] { story.emplace_back("finish"); },
                .wait = [](std::chrono::milliseconds) {}};
    }

    bool runHelper(const Command& command) {
        commands.push_back(command);
        story.push_back(command[0]);
        if (refused.contains(command[0]) && refusals-- > 0) {
            return false;
        }
        SMC smc = controller.open();
        const int fan = std::stoi(command[1]);
        return command[0] == "set" ? smc.setFanSpeed(fan, std::stod(command[2])) : smc.resetFan(fan);
    }

    std::map<QString, CheckResult> run() {
        HelperChecks checks(services());
        std::map<QString, CheckResult> results;
        for (const SelfCheck& check : checks.checks()) {
            results.emplace(shortName(check.name), check.run());
        }
        return results;
    }

    static Outcome outcome(const std::map<QString, CheckResult>& results, const char* name) {
        return results.at(QString::fromLatin1(name)).outcome;
    }

    void expectNothingDriven() {
        const auto results = run();
        for (const char* const name : {"set", "auto", "before"}) {
            EXPECT_EQ(outcome(results, name), Outcome::skip) << name;
        }
        EXPECT_THAT(commands, IsEmpty());
        EXPECT_THAT(controller.writes, IsEmpty());
    }
};

} // namespace

TEST_F(HelperChecksTest, AFanIsDrivenAndHandedBackWhileSomebodyWatches) {
    const auto results = run();
    for (const auto& [name, result] : results) {
        EXPECT_EQ(result.outcome, Outcome::pass) << name.toStdString() << ": " << result.detail.toStdString();
    }
    // A tenth of its range faster than it turns.
    EXPECT_THAT(commands, ElementsAre(Command{"set", "0", "2480"}, Command{"auto", "0"}));
    EXPECT_THAT(story, ElementsAre("version", "announce 0", "set", "auto", "finish"));
    EXPECT_EQ(controller.number("FS! "), 0);
}

TEST_F(HelperChecksTest, WithModesAndAnUnlockToo) {
    controller.remove("FS! ");
    controller.addUnlockableFans(2);
    controller.setNumber("TC0P", "sp78", 55);
    const auto results = run();
    EXPECT_EQ(outcome(results, "set"), Outcome::pass);
    EXPECT_EQ(outcome(results, "auto"), Outcome::pass);
    EXPECT_EQ(outcome(results, "before"), Outcome::pass);
    EXPECT_EQ(controller.number("Ftst"), 0);
    EXPECT_EQ(controller.number("F0Md"), 0);
}

TEST_F(HelperChecksTest, AFanNeverTurnsSlowerThanBeforeNorFasterThanItCan) {
    controller.setNumber("F0Ac", "fpe2", 5900);
    static_cast<void>(run());
    EXPECT_EQ(commands.at(0), (Command{"set", "0", "6000"}));
    commands.clear();
    controller.setNumber("F0Ac", "fpe2", 1200);
    controller.setNumber("F0Tg", "fpe2", 4000);
    static_cast<void>(run());
    EXPECT_EQ(commands.at(0), (Command{"set", "0", "4480"}));
}

TEST_F(HelperChecksTest, WithoutAHelperEverythingIsLeftOut) {
    file.reset();
    for (const auto& [name, result] : run()) {
        EXPECT_EQ(result.outcome, Outcome::skip) << name.toStdString();
    }
    EXPECT_THAT(story, IsEmpty());
}

TEST_F(HelperChecksTest, AFileOfAnotherModeIsAFailureAndIsNotRun) {
    file->permissions = 0755;
    const auto results = run();
    EXPECT_EQ(results.at(QStringLiteral("mode")), CheckResult::fail(QStringLiteral("0755 instead of 4755")));
    EXPECT_EQ(outcome(results, "version"), Outcome::skip);
    EXPECT_EQ(outcome(results, "set"), Outcome::skip);
    EXPECT_THAT(story, IsEmpty());
}

TEST_F(HelperChecksTest, AFileOfAnotherUserOrKindIsAFailureAndIsNotRun) {
    file->owner = 501;
    EXPECT_EQ(outcome(run(), "owner"), Outcome::fail);
    file->owner = 0;
    file->kind = FileStatus::Kind::symbolicLink;
    EXPECT_EQ(outcome(run(), "present"), Outcome::fail);
    EXPECT_THAT(story, IsEmpty());
}

TEST_F(HelperChecksTest, AModeThatIsTooWideDrivesNothing) {
    file->permissions = 04777;
    EXPECT_EQ(outcome(run(), "mode"), Outcome::fail);
    EXPECT_THAT(commands, IsEmpty());
}

TEST_F(HelperChecksTest, AnotherVersionDrivesNothing) {
    version = "2";
    const auto results = run();
    EXPECT_EQ(results.at(QStringLiteral("version")),
              CheckResult::fail(QStringLiteral("answered \"2\" instead of \"3\"")));
    EXPECT_EQ(outcome(results, "set"), Outcome::skip);
    EXPECT_THAT(commands, IsEmpty());
}

TEST_F(HelperChecksTest, BesideAnotherInstanceNothingIsDriven) {
    isOnlyInstance = false;
    expectNothingDriven();
}

TEST_F(HelperChecksTest, TheSafetyRulesStandAboveIt) {
    controller.setNumber("TC0P", "sp78", 92);
    expectNothingDriven();
    controller.setNumber("TC0P", "sp78", 90);
    expectNothingDriven();
    controller.remove("TC0P");
    expectNothingDriven();
}

TEST_F(HelperChecksTest, AFanThatSomebodyDrivesIsLeftAlone) {
    controller.setNumber("FS! ", "ui16", 1);
    EXPECT_EQ(outcome(run(), "set"), Outcome::pass);
    EXPECT_THAT(commands, ElementsAre(Command{"set", "1", "2480"}, Command{"auto", "1"}));
    EXPECT_EQ(controller.number("FS! "), 1);
    commands.clear();
    controller.writes.clear();
    controller.setNumber("FS! ", "ui16", 3);
    expectNothingDriven();
    EXPECT_EQ(controller.number("FS! "), 3);
}

TEST_F(HelperChecksTest, AFanThatTellsNoMaximumIsNotDriven) {
    controller.remove("F0Mx");
    static_cast<void>(run());
    EXPECT_EQ(commands.at(0)[1], "1");
}

TEST_F(HelperChecksTest, WithoutAFanNothingIsDriven) {
    controller.setNumber("FNum", "ui8 ", 0);
    expectNothingDriven();
}

TEST_F(HelperChecksTest, ARefusedSpeedIsAFailureAndTheFanIsHandedBackAllTheSame) {
    refused = {"set"};
    const auto results = run();
    EXPECT_EQ(outcome(results, "set"), Outcome::fail);
    EXPECT_EQ(outcome(results, "auto"), Outcome::pass);
    EXPECT_THAT(story, ElementsAre("version", "announce 0", "set", "auto", "finish"));
}

TEST_F(HelperChecksTest, ASpeedThatIsNotReadBackIsAFailure) {
    controller.at("F0Tg").writeResult = SMCResult::success;
    controller.hook = [](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        // Accepted, and forgotten.
        if (request.data8 == SMCCommand::writeKey && request.key == SMC::fourCC("F0Tg")) {
            return ScriptedSMC::Reply(SMCParam{});
        }
        return std::nullopt;
    };
    const auto results = run();
    EXPECT_EQ(outcome(results, "set"), Outcome::fail);
    EXPECT_EQ(outcome(results, "auto"), Outcome::pass);
}

TEST_F(HelperChecksTest, AHandBackThatIsRefusedIsTriedAgain) {
    refused = {"auto"};
    refusals = 2;
    EXPECT_EQ(outcome(run(), "auto"), Outcome::pass);
    EXPECT_THAT(story, ElementsAre("version", "announce 0", "set", "auto", "auto", "auto", "finish"));
}

TEST_F(HelperChecksTest, AFanThatStaysManualIsAFailureAndLeftToTheGuard) {
    refused = {"auto"};
    const auto results = run();
    EXPECT_EQ(outcome(results, "auto"), Outcome::fail);
    EXPECT_EQ(outcome(results, "before"), Outcome::fail);
    EXPECT_EQ(std::ranges::count(story, "auto"), 5);
    EXPECT_EQ(std::ranges::count(story, "finish"), 0);
}

} // namespace Fenwhirl
