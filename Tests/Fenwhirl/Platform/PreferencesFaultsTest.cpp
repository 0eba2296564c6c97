// Every system call of a save fails once, with every error that a disk or a system at its limits can give:
// the file is the old one or the new one, whatever else it holds stays, and the program carries on.

#include "Fenwhirl/Platform/ChildProcess.h"
#include "Fenwhirl/Platform/FilePreferencesLinux.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

const std::string strace = "/usr/bin/strace";

// The n-th call of this name since the start of the program.
using Call = std::pair<std::string, int>;

class SaveUnderATracer : public testing::Test {
protected:
    // Runs the program that saves, under a tracer with these options; what the tracer wrote down.
    std::vector<std::string> save(const std::vector<std::string>& options) {
        folder.write("preferences.json", R"({"warmThreshold":1,"theme":"light"})");
        std::vector<std::string> arguments = {"-f", "-qq", "-o", folder.path("log")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(), {FENWHIRL_SAVE_TOOL, path()});
        const auto result = runChild(strace, arguments, ChildOutput::discard, ChildEnvironment::inherited);
        endedWell = result && result->exitStatus == 0;
        std::vector<std::string> lines;
        std::istringstream log(folder.read("log"));
        for (std::string line; std::getline(log, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    // From the first that has to do with the file to the program's end.
    std::vector<Call> callsOfASave() {
        const std::regex call(R"(^\d+ +([a-z0-9_]+)\()");
        std::map<std::string, int> counts;
        std::vector<Call> calls;
        bool begun = false;
        for (const std::string& line : save({})) {
            std::smatch match;
            // The C library has no use for a failing futex and ends the program by itself.
            if (!std::regex_search(line, match, call) || match[1] == "exit_group" || match[1] == "futex") {
                continue;
            }
            const int number = ++counts[match[1]];
            begun = begun || line.find("preferences.json") != std::string::npos;
            // The first line of all is the start of the program with the file's name in its arguments.
            if (begun && match[1] != "execve") {
                calls.emplace_back(match[1], number);
            }
            begun = begun && match[1] != "execve";
        }
        EXPECT_TRUE(endedWell);
        return calls;
    }

    [[nodiscard]] std::string path() const { return folder.path("preferences.json"); }

    void SetUp() override {
        if (!std::filesystem::exists(strace)) {
            GTEST_SKIP() << "strace is not installed";
        }
    }

    TemporaryFolder folder;
    bool endedWell = false;
};

class PreferencesFaults : public SaveUnderATracer, public testing::WithParamInterface<const char*> {};

} // namespace

// What a power cut leaves depends on the order: the contents before the name, and the name before the return.
TEST_F(SaveUnderATracer, ReachesTheDiskStepByStep) {
    std::vector<std::string> steps;
    for (const auto& [name, number] : callsOfASave()) {
        if (name == "write" || name == "fsync" || name == "rename") {
            steps.push_back(name);
        }
    }
    EXPECT_EQ(steps, (std::vector<std::string>{"write", "fsync", "rename", "fsync"}));
}

TEST_P(PreferencesFaults, LeaveTheOldOrTheNewFile) {
    const auto calls = callsOfASave();
    for (const char* expected : {"openat", "read", "write", "fsync", "close", "rename", "flock", "unlink"}) {
        // What a save that succeeds has no need of is not among them.
        EXPECT_EQ(std::ranges::any_of(calls, [&](const Call& call) { return call.first == expected; }),
                  std::string(expected) != "unlink")
            << expected;
    }
    for (const auto& [name, number] : calls) {
        const std::string fault =
            "inject=" + name + ":error=" + GetParam() + ":when=" + std::to_string(number);
        const auto lines = save({"-e", "trace=" + name, "-e", fault});
        EXPECT_TRUE(std::ranges::any_of(lines, [](const auto& line) {
            return line.find("(INJECTED)") != std::string::npos;
        })) << fault;
        EXPECT_TRUE(endedWell) << fault;
        const FilePreferences store(path());
        const auto saved = store.number(QStringLiteral("warmThreshold"));
        EXPECT_TRUE(saved == 1 || saved == 2) << fault;
        EXPECT_EQ(store.text(QStringLiteral("theme")), QStringLiteral("light")) << fault;
    }
}

INSTANTIATE_TEST_SUITE_P(OfEachCall, PreferencesFaults,
                         testing::Values("EIO", "ENOSPC", "EDQUOT", "EROFS", "ENOMEM", "EMFILE", "EINTR"),
                         [](const auto& instance) { return std::string(instance.param); });
