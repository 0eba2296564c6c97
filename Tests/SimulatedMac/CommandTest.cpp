#include "SimulatedMac/CommandStream.h"
#include "SimulatedMac/Commands.h"
#include "SimulatedMac/MacHarness.h"
#include "SimulatedMac/Options.h"
#include "SimulatedMac/TextParsing.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace simulated {
namespace {

struct Commands : testing::Test {
    MacHarness harness;
    AnswerFaults faults;
    ServerCounters counters;
    CommandContext context{.mac = harness.mac, .faults = faults, .counters = counters};

    std::string run(std::string_view line) {
        const CommandOutcome outcome = runCommand(context, line, harness.now);
        EXPECT_FALSE(outcome.pending) << line;
        return outcome.answer;
    }

    // What a client reads from a key: its bytes in hexadecimal, or the result code.
    std::string seen(FourCC key) { return harness.bytesOf(key); }

    // The value that follows "name=" in the state line.
    std::string stateOf(const std::string& name) {
        const std::string line = run("state") + " ";
        const std::size_t begin = line.find(" " + name + "=");
        EXPECT_NE(begin, std::string::npos) << name << " in " << line;
        const std::size_t from = begin + name.size() + 2;
        return line.substr(from, line.find(' ', from) - from);
    }

    double numberOf(const std::string& name) { return parseNumber(stateOf(name)).value(); }
};

bool endsClearly(const std::string& answer) {
    const std::size_t last = answer.rfind('\n');
    const std::string line = last == std::string::npos ? answer : answer.substr(last + 1);
    return line.starts_with("ok") || line.starts_with("error:");
}

TEST_F(Commands, EveryCommandIsAnsweredByALineThatSaysSo) {
    for (const Command& command : commandTable()) {
        const CommandOutcome outcome = runCommand(context, command.name, harness.now);
        ASSERT_FALSE(outcome.pending) << command.name;
        EXPECT_TRUE(endsClearly(outcome.answer)) << command.name << ": " << outcome.answer;
        const std::string block = outcome.answer.substr(0, outcome.answer.rfind('\n') + 1);
        EXPECT_EQ(block.find("\nok"), std::string::npos) << command.name;
        EXPECT_FALSE(block.starts_with("ok")) << command.name;
    }
}

TEST_F(Commands, HelpNamesEveryCommand) {
    const std::string help = run("help");
    std::set<std::string_view> names;
    for (const Command& command : commandTable()) {
        EXPECT_NE(help.find("  " + std::string(command.name)), std::string::npos) << command.name;
        EXPECT_TRUE(names.insert(command.name).second) << command.name << " exists twice";
        EXPECT_NE(usageText().find(command.summary), std::string::npos) << command.name;
    }
}

TEST_F(Commands, UnknownCommandsFailAndEmptyLinesAreIgnored) {
    EXPECT_TRUE(run("frobnicate").starts_with("error: unknown command"));
    EXPECT_EQ(run(""), "");
    EXPECT_EQ(run("   "), "");
    EXPECT_EQ(run("# a remark"), "");
}

TEST_F(Commands, ControlCharactersAreRefusedAndNotRepeated) {
    for (const char* line : {"say a\x1b[2J", "say a\nok", "frob\rnicate", "\x7f"}) {
        EXPECT_EQ(run(line), "error: control character in the command");
    }
    EXPECT_EQ(run("say\ta"), "ok a");
}

TEST_F(Commands, SetPinsANumberInTheKeysOwnType) {
    EXPECT_EQ(run("set TC0P 93.5"), "ok TC0P type=sp78 size=2 bytes=5D80 value=93.50 pinned");
    EXPECT_EQ(seen(fourCC("TC0P")), "5D80");
    harness.pass(60);
    EXPECT_EQ(seen(fourCC("TC0P")), "5D80") << "whatever the machine does";
    EXPECT_EQ(run("unpin TC0P").substr(0, 7), "ok TC0P");
    EXPECT_NE(seen(fourCC("TC0P")), "5D80");
}

TEST_F(Commands, SetRefusesKeysAndValuesThatAreNoNumbers) {
    EXPECT_TRUE(run("set ZZZZ 1").starts_with("error:"));
    EXPECT_TRUE(run("set F0ID 1").starts_with("error:"));
    EXPECT_TRUE(run("set TC0P warm").starts_with("error:"));
    EXPECT_TRUE(run("set TC0P").starts_with("error:"));
}

TEST_F(Commands, PinTakesTheValuesOwnBytes) {
    EXPECT_EQ(run("pin #KEY FFFFFFFF").substr(0, 8), "ok #KEY ");
    EXPECT_EQ(seen(fourCC("#KEY")), "FFFFFFFF");
    EXPECT_TRUE(run("pin #KEY FFF").starts_with("error:"));
    EXPECT_EQ(run("unpin all"), "ok");
    EXPECT_EQ(seen(fourCC("#KEY")), "000002CF");
}

TEST_F(Commands, APinnedTargetIsShownButTheFanObeysTheWrittenOne) {
    run("set F0Tg 2500");
    (void)harness.write(fourCC("FS! "), "0001");
    (void)harness.write(fourCC("F0Tg"), "3E80");
    harness.pass(20);
    EXPECT_EQ(seen(fourCC("F0Tg")), "2710");
    EXPECT_NEAR(harness.mac.state().fans[0].rpm, 4000, 5);
}

TEST_F(Commands, AVanishedKeyIsNowhereUntilItIsRestored) {
    EXPECT_TRUE(run("vanish F1Ac").starts_with("ok"));
    EXPECT_EQ(harness.info(fourCC("F1Ac")).record.result, 0x84);
    EXPECT_EQ(harness.call(Fenwhirl::SMCCommand::readKey, fourCC("F1Ac"), 2).record.result, 0x84);
    std::size_t failures = 0;
    for (std::uint32_t i = 0; i < harness.mac.keys().count(); ++i) {
        failures += harness.byIndex(i).record.result != 0 ? 1U : 0U;
    }
    EXPECT_EQ(failures, 1U);
    EXPECT_TRUE(run("restore F1Ac").starts_with("ok"));
    EXPECT_EQ(harness.info(fourCC("F1Ac")).record.result, 0);
}

TEST_F(Commands, AnUnreadableKeyStillHasItsInfo) {
    EXPECT_TRUE(run("unreadable F1Ac").starts_with("ok"));
    EXPECT_EQ(harness.info(fourCC("F1Ac")).record.result, 0);
    EXPECT_EQ(harness.read(fourCC("F1Ac")).record.result, 0x85);
    EXPECT_TRUE(run("unreadable F1Ac A1").starts_with("ok"));
    EXPECT_EQ(harness.read(fourCC("F1Ac")).record.result, 0xA1);
    EXPECT_TRUE(run("unreadable F1Ac 100").starts_with("error:"));
    EXPECT_EQ(run("restore all"), "ok");
    EXPECT_EQ(harness.read(fourCC("F1Ac")).record.result, 0);
}

TEST_F(Commands, RefusedWritesAreRefusedKeyByKeyOrAltogether) {
    EXPECT_TRUE(run("refuse F0Tg").starts_with("ok"));
    EXPECT_EQ(harness.write(fourCC("F0Tg"), "2EE0").record.result, 0x86);
    EXPECT_EQ(harness.write(fourCC("F1Tg"), "2EE0").record.result, 0);
    EXPECT_EQ(run("refuse all 89"), "ok");
    EXPECT_EQ(harness.write(fourCC("F1Tg"), "2EE0").record.result, 0x89);
    EXPECT_EQ(harness.write(fourCC("F0Tg"), "2EE0").record.result, 0x86) << "its own refusal comes first";
    EXPECT_EQ(run("refuse all kernel"), "ok");
    EXPECT_EQ(harness.write(fourCC("F1Tg"), "2EE0").kernelReturn, 0xE00002C1U);
    EXPECT_EQ(run("accept all"), "ok");
    EXPECT_EQ(harness.write(fourCC("F0Tg"), "2EE0").record.result, 0);
}

TEST_F(Commands, AnotherProgramWritesByTheRulesForEveryClient) {
    EXPECT_EQ(run("write FS! 3"), "ok FS! type=ui16 size=2 bytes=0003 value=3.00");
    EXPECT_EQ(run("write F1Tg 3000"), "ok F1Tg type=fpe2 size=2 bytes=2EE0 value=3000.00");
    EXPECT_TRUE(stateOf("fan1").ends_with("/manual"));
    EXPECT_EQ(harness.mac.writes().last(), 2U) << "it is in the log of writes";
    EXPECT_TRUE(run("refuse F1Tg").starts_with("ok"));
    EXPECT_EQ(run("write F1Tg 2500"), "error: the write was refused");
    EXPECT_EQ(seen(fourCC("F1Tg")), "2EE0");
    for (const char* wrong : {"write", "write F1Tg", "write F1Tg fast", "write F9Tg 3000", "write F1Tg 1 2",
                              "write #KEY 4"}) { // the last key is read-only
        EXPECT_TRUE(run(wrong).starts_with("error:")) << wrong;
    }
}

TEST_F(Commands, AKeyWithATrailingBlankCanBeNamedWithoutIt) {
    EXPECT_EQ(run("get FS!"), "ok FS! type=ui16 size=2 bytes=0000 value=0.00");
}

TEST_F(Commands, DefineAddsAKey) {
    EXPECT_EQ(run("define TX0X sp78 2 80 3280"), "ok TX0X type=sp78 size=2 bytes=3280 value=50.50");
    EXPECT_EQ(seen(fourCC("TX0X")), "3280");
    EXPECT_EQ(run("define FNum ui32 4 80 0000FFFF"),
              "ok FNum type=ui32 size=4 bytes=0000FFFF value=65535.00");
    EXPECT_TRUE(run("define TX0X sp78 2").starts_with("error:"));
    EXPECT_TRUE(run("define TX0X sp78 4294967296 80 00").starts_with("error:"));
}

TEST_F(Commands, KeysListsByPrefixInTheSMCsOrder) {
    const std::string answer = run("keys FS");
    EXPECT_EQ(answer, "239 FS! type=ui16 size=2 bytes=0000 value=0.00\n"
                      "240 FSDc type=ui16 size=2 bytes=6900 value=26880.00\nok 2 keys");
}

TEST_F(Commands, ConstantHeatWarmsTheMachine) {
    EXPECT_EQ(run("heat 47"), "ok constant");
    EXPECT_EQ(run("advance 300"), "ok time=300.000");
    EXPECT_GT(numberOf("die"), 80);
    EXPECT_EQ(stateOf("watts"), "47.0");
    EXPECT_EQ(run("heat host"), "ok host");
    EXPECT_EQ(stateOf("heat"), "host");
    for (const char* wrong :
         {"heat", "heat warm", "heat -3", "heat 1 2 3", "heat course", "heat course /nowhere", "heat %",
          "heat 101%", "heat -1%", "heat 5%%", "heat 5 %", "heat nan%"}) {
        EXPECT_TRUE(run(wrong).starts_with("error:")) << wrong;
    }
}

TEST_F(Commands, ALoadIsRelativeToTheMachinesOwnPower) {
    EXPECT_EQ(run("heat 0%"), "ok constant");
    EXPECT_NEAR(numberOf("watts"), harness.mac.model().idle.processorWatts, 0.06);
    EXPECT_EQ(run("heat 100%"), "ok constant");
    EXPECT_NEAR(numberOf("watts"), harness.mac.model().powers.processorWatts, 0.06);
    run("heat 50%");
    EXPECT_GT(numberOf("watts"), 0.5 * harness.mac.model().powers.processorWatts);
    EXPECT_LT(numberOf("watts"), harness.mac.model().powers.processorWatts);
}

TEST_F(Commands, ACourseIsReadFromItsFile) {
    const std::string path = testing::TempDir() + "course-" + std::to_string(::getpid());
    std::ofstream(path) << "0 40\n1000 40\n";
    EXPECT_EQ(run("heat course " + path), "ok course");
    run("advance 10");
    EXPECT_EQ(stateOf("watts"), "40.0");
    std::ofstream(path) << "nonsense\n";
    EXPECT_TRUE(run("heat course " + path).starts_with("error:"));
    (void)std::remove(path.c_str());
}

TEST_F(Commands, StateNamesFansWithSpeedTargetAndMode) {
    EXPECT_EQ(stateOf("fan0"), "2157/2160/automatic");
    (void)harness.write(fourCC("FS! "), "0001");
    (void)harness.write(fourCC("F0Tg"), "3E80");
    run("advance 20");
    EXPECT_EQ(stateOf("fan0"), "4000/4000/manual");
    EXPECT_EQ(stateOf("writes"), "2");
    EXPECT_EQ(stateOf("unlock"), "none");
}

TEST_F(Commands, SleepAndWakeForgetManualModes) {
    (void)harness.write(fourCC("FS! "), "0001");
    EXPECT_EQ(run("sleep"), "ok");
    EXPECT_EQ(stateOf("asleep"), "1");
    EXPECT_EQ(run("wake"), "ok");
    EXPECT_EQ(stateOf("asleep"), "0");
    EXPECT_EQ(seen(fourCC("FS! ")), "0000");
}

TEST_F(Commands, SpeedAndAdvanceCheckTheirNumbers) {
    EXPECT_EQ(run("speed 10"), "ok");
    EXPECT_TRUE(run("speed -1").starts_with("error:"));
    EXPECT_TRUE(run("speed fast").starts_with("error:"));
    EXPECT_TRUE(run("advance").starts_with("error:"));
    EXPECT_TRUE(run("advance 1e9").starts_with("error:"));
}

TEST_F(Commands, FaultsAreParsedWithTheirLimits) {
    EXPECT_EQ(run("fault length 79 after 3 times 2 key F0Ac command read"), "ok length:79");
    EXPECT_EQ(faults.current().after, 3U);
    EXPECT_EQ(faults.current().times, 2U);
    EXPECT_EQ(faults.current().key, fourCC("F0Ac"));
    EXPECT_EQ(faults.current().command, Fenwhirl::SMCCommand::readKey);
    EXPECT_EQ(run("delay 250"), "ok delay:250");
    EXPECT_EQ(run("answer"), "ok");
    EXPECT_EQ(faults.current().kind, FaultKind::none);
    for (const char* wrong : {"fault", "fault melt", "fault length", "fault length 5000", "fault result 100",
                              "fault silence after", "fault silence after x", "fault silence command fly",
                              "delay", "delay soon"}) {
        EXPECT_TRUE(run(wrong).starts_with("error:")) << wrong;
    }
}

TEST_F(Commands, LogShowsWritesFromANumberOn) {
    (void)harness.write(fourCC("FS! "), "0001");
    (void)harness.write(fourCC("F0Tg"), "3E80");
    EXPECT_EQ(run("log 3"), "ok 0 writes, last=2");
    const std::string answer = run("log 2");
    EXPECT_TRUE(answer.starts_with("write 2 ")) << answer;
    EXPECT_NE(answer.find("key=F0Tg type=fpe2 bytes=3E80 value=4000.00"), std::string::npos) << answer;
    EXPECT_TRUE(answer.ends_with("\nok 1 writes, last=2")) << answer;
}

TEST_F(Commands, QuitAsksTheProgramToEnd) {
    EXPECT_EQ(run("quit"), "ok bye");
    EXPECT_TRUE(context.quit);
}

// Commands that wait, run through a stream as the program runs them.
struct WaitingCommands : Commands {
    CommandStream stream;
    std::vector<std::string> answers;

    void pump() {
        stream.run(context, harness.now,
                   [this](const std::string&, const std::string& answer) { answers.push_back(answer); });
    }
};

TEST_F(WaitingCommands, WaitDelaysLaterCommandsInSimulatedTime) {
    harness.mac.setSpeed(10, harness.now);
    stream.add("wait 5");
    stream.add("say done");
    pump();
    EXPECT_TRUE(stream.isWaiting());
    harness.pass(0.4);
    pump();
    EXPECT_TRUE(answers.empty());
    harness.pass(0.2);
    pump();
    EXPECT_FALSE(stream.isWaiting());
    EXPECT_EQ(answers, (std::vector<std::string>{"ok", "ok done"}));
}

TEST_F(WaitingCommands, AwaitWriteAnswersWithTheNextWriteOfThatKey) {
    (void)harness.write(fourCC("F0Tg"), "2EE0");
    stream.add("await write F0Tg");
    pump();
    EXPECT_TRUE(answers.empty()) << "earlier writes do not count";
    (void)harness.write(fourCC("F1Tg"), "2EE0");
    pump();
    EXPECT_TRUE(answers.empty());
    (void)harness.write(fourCC("F0Tg"), "3E80");
    pump();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_TRUE(answers[0].starts_with("ok write 3 ")) << answers[0];
}

TEST_F(WaitingCommands, AwaitWriteSinceFindsWhatHasHappenedAlready) {
    (void)harness.write(fourCC("FS! "), "0001");
    (void)harness.write(fourCC("F0Tg"), "2EE0");
    stream.add("await write any since 1");
    pump();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_TRUE(answers[0].starts_with("ok write 2 ")) << answers[0];
}

TEST_F(WaitingCommands, AwaitValueWatchesWhatReadersSee) {
    stream.add("await value TC0P above 90 within 60");
    pump();
    EXPECT_TRUE(answers.empty());
    harness.pass(5);
    run("set TC0P 95");
    pump();
    EXPECT_EQ(answers, std::vector<std::string>{"ok value=95.00"});
}

TEST_F(WaitingCommands, AwaitRequestsCountsThem) {
    stream.add("await requests 3");
    pump();
    EXPECT_TRUE(answers.empty());
    counters.requests = 3;
    pump();
    EXPECT_EQ(answers, std::vector<std::string>{"ok"});
}

TEST_F(WaitingCommands, WaitingCommandsTimeOut) {
    stream.add("await write F0Tg within 2");
    pump();
    harness.pass(1.9);
    pump();
    EXPECT_TRUE(answers.empty());
    harness.pass(0.2);
    pump();
    EXPECT_EQ(answers, std::vector<std::string>{"error: it did not happen in time"});
}

TEST_F(WaitingCommands, WaitingWhileTimeStandsStillIsAnError) {
    harness.mac.setSpeed(0, harness.now);
    stream.add("wait 1");
    pump();
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_TRUE(answers[0].starts_with("error:"));
}

TEST_F(WaitingCommands, MalformedWaitsAreErrors) {
    for (const char* line : {"await", "await write", "await value TC0P 90", "await value ZZZZ above 3",
                             "await value TC0P over 3", "await requests x", "await write F0Tg within soon",
                             "await write F0Tg since x", "wait", "wait -1"}) {
        answers.clear();
        stream.add(line);
        pump();
        ASSERT_EQ(answers.size(), 1U) << line;
        EXPECT_TRUE(answers[0].starts_with("error:")) << line;
    }
}

TEST_F(WaitingCommands, NothingRunsAfterQuit) {
    stream.add("quit");
    stream.add("say too late");
    pump();
    EXPECT_EQ(answers, std::vector<std::string>{"ok bye"});
}

TEST(LineCutter, CutsWhateverPiecesArrive) {
    LineCutter cutter;
    std::vector<std::string> lines;
    const auto add = [&](std::string line) { lines.push_back(std::move(line)); };
    cutter.add("sta", add);
    cutter.add("te\r\nlog\n\nqu", add);
    EXPECT_EQ(lines, (std::vector<std::string>{"state", "log", ""}));
    EXPECT_EQ(cutter.finish(), "qu");
    EXPECT_EQ(cutter.finish(), "");
}

TEST(LineCutter, AnEndlessLineIsCutOff) {
    LineCutter cutter;
    std::vector<std::string> lines;
    const auto add = [&](std::string line) { lines.push_back(std::move(line)); };
    for (int i = 0; i < 100; ++i) {
        cutter.add(std::string(10'000, 'x'), add);
    }
    cutter.add("\nstate\n", add);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].size(), 65536U);
    EXPECT_EQ(lines[1], "state");
}

std::optional<Options> options(std::vector<std::string_view> arguments) {
    std::string error;
    return parseOptions(arguments, error);
}

TEST(Options, HaveUsualValues) {
    const auto usual = options({});
    ASSERT_TRUE(usual);
    EXPECT_EQ(usual->machine, "MacBookPro11,4");
    EXPECT_EQ(usual->heat, std::vector<std::string>{"host"});
    EXPECT_EQ(usual->speed, 1);
    EXPECT_FALSE(usual->quitAtEndOfInput);
}

TEST(Options, AreReadOneByOne) {
    const auto read = options({"--machine", "AppleSilicon", "--heat", "20 5", "--speed", "0.5", "--script",
                               "a", "--write-log", "b", "--quit-at-end-of-input", "--list", "--help"});
    ASSERT_TRUE(read);
    EXPECT_EQ(read->machine, "AppleSilicon");
    EXPECT_EQ(read->heat, (std::vector<std::string>{"20", "5"}));
    EXPECT_EQ(read->speed, 0.5);
    EXPECT_EQ(read->script, "a");
    EXPECT_EQ(read->writeLog, "b");
    EXPECT_TRUE(read->quitAtEndOfInput && read->list && read->help);
}

TEST(Options, WrongOnesAreNamed) {
    std::string error;
    const std::vector<std::string_view> unknown{"--socket", "/tmp/x"};
    EXPECT_FALSE(parseOptions(unknown, error));
    EXPECT_NE(error.find("--socket"), std::string::npos);
    EXPECT_FALSE(options({"--machine"}));
    EXPECT_FALSE(options({"--speed", "-1"}));
    EXPECT_FALSE(options({"--speed", "fast"}));
    EXPECT_FALSE(options({"state"}));
}

} // namespace
} // namespace simulated
