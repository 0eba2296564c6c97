// Every system call of a save fails once, with every error that a disk can give: the file is the old one or
// the new one, and the program carries on.

#include "Fenwhirl/Platform/ChildProcess.h"
#include "Fenwhirl/Platform/FilePreferencesLinux.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string strace = "/usr/bin/strace";

class PreferencesFaults : public testing::TestWithParam<const char*> {
protected:
    // Runs the program that saves, under a tracer with further options; the calls that it made.
    std::vector<std::string> save(const std::string& calls, const std::vector<std::string>& options) {
        folder.write("preferences.json", R"({"warmThreshold":1,"theme":"light"})");
        std::vector<std::string> arguments = {"-f", "-qq", "-o", folder.path("log"), "-e", "trace=" + calls};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.insert(arguments.end(), {FENWHIRL_SAVE_TOOL, path()});
        const auto result = runChild(strace, arguments, ChildOutput::discard, ChildEnvironment::inherited);
        EXPECT_TRUE(result && result->exitStatus == 0);
        std::vector<std::string> lines;
        std::istringstream log(folder.read("log"));
        for (std::string line; std::getline(log, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    [[nodiscard]] std::string path() const { return folder.path("preferences.json"); }

    TemporaryFolder folder;
};

} // namespace

TEST_P(PreferencesFaults, LeaveTheOldOrTheNewFile) {
    if (!std::filesystem::exists(strace)) {
        GTEST_SKIP() << "strace is not installed";
    }
    const std::string call = GetParam();
    // Which of the calls belong to the preferences and not to the start of the program.
    int first = 0;
    int count = 0;
    for (const std::string& line : save(call == "openat" ? call : "openat," + call, {})) {
        count += line.find(' ' + call + '(') == std::string::npos ? 0 : 1;
        if (first == 0 && line.find("preferences.json") != std::string::npos) {
            first = call == "openat" ? count : count + 1;
        }
    }
    ASSERT_GT(first, 0);
    ASSERT_GE(count, first);
    for (const char* error : {"EIO", "ENOSPC", "EINTR"}) {
        for (int when = first; when <= count; ++when) {
            const std::string fault = "inject=" + call + ":error=" + error + ":when=" + std::to_string(when);
            const auto lines = save(call, {"-e", fault});
            EXPECT_TRUE(std::ranges::any_of(lines, [](const auto& line) {
                return line.find("(INJECTED)") != std::string::npos;
            })) << fault;
            const FilePreferences store(path());
            const auto number = store.number(QStringLiteral("warmThreshold"));
            EXPECT_TRUE(number == 1 || number == 2) << fault;
            if (call != "openat" && call != "read") { // when the file cannot be read its keys are unknown
                EXPECT_EQ(store.text(QStringLiteral("theme")), QStringLiteral("light")) << fault;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachCall, PreferencesFaults,
                         testing::Values("openat", "read", "write", "fsync", "close", "rename", "flock"),
                         [](const auto& instance) { return std::string(instance.param); });
