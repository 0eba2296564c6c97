// Makes every system call of a save fail once, with every error that a disk or a system at its limits can
// report. Afterwards the file must be the old or the new one, its other contents must be unchanged, and the
// program must carry on.

#include "Fenwhirl/Platform/Preferences/FilePreferencesLinux.h"
#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Fenwhirl {

namespace {

const std::string strace = "/usr/bin/strace";

// The n-th call of this name since the program started.
using Call = std::pair<std::string, int>;

// The name of the system call in a line of strace's log, "1234  write(3, …"; empty in its other lines.
std::string systemCallIn(const std::string& line) {
    std::istringstream fields(line);
    int process = 0;
    std::string name;
    std::getline(fields >> process >> std::ws, name, '(');
    const bool isName = name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") == std::string::npos;
    return isName && !fields.eof() ? name : "";
}

class SaveUnderStrace : public testing::Test {
protected:
    // Runs the program that saves under strace with these options; returns strace's log.
    std::vector<std::string> save(const std::vector<std::string>& options) {
        folder.write("preferences.json", R"({"warmThreshold":1,"theme":"light"})");
        std::vector<std::string> arguments = {"-f", "--seccomp-bpf", "-qq", "-o", folder.path("log")};
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

    // The system calls from the first one that concerns the file to the end of the program.
    std::vector<Call> systemCallsOfSave() {
        std::map<std::string, int> counts;
        std::vector<Call> calls;
        bool begun = false;
        for (const std::string& line : save({})) {
            const std::string call = systemCallIn(line);
            // Skipped: a failing futex makes the C library end the program, and exit_group ends it anyway.
            if (call.empty() || call == "exit_group" || call == "futex") {
                continue;
            }
            const int number = ++counts[call];
            begun = begun || line.find("preferences.json") != std::string::npos;
            // The execve has the file's name in its arguments, but precedes the save.
            if (begun && call != "execve") {
                calls.emplace_back(call, number);
            }
            begun = begun && call != "execve";
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

class PreferencesFaults : public SaveUnderStrace, public testing::WithParamInterface<const char*> {};

} // namespace

// What a power cut leaves behind depends on the order: first the contents reach the disk, then the name, and
// only then does the save return.
TEST_F(SaveUnderStrace, ReachesTheDiskStepByStep) {
    std::vector<std::string> steps;
    for (const auto& [name, number] : systemCallsOfSave()) {
        if (name == "write" || name == "fsync" || name == "rename") {
            steps.push_back(name);
        }
    }
    EXPECT_EQ(steps, (std::vector<std::string>{"write", "fsync", "rename", "fsync"}));
}

TEST_P(PreferencesFaults, LeaveTheOldOrTheNewFile) {
    const auto calls = systemCallsOfSave();
    for (const char* expected : {"openat", "read", "write", "fsync", "close", "rename", "flock", "unlink"}) {
        // A successful save does not unlink anything.
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

} // namespace Fenwhirl
