// A test application without a user interface. It contains only the client side of the privileged helper, and
// is controlled through standard input. It is installed as libFenwhirlApp.so beside a copy of the real
// executable, so that the system tests exercise the real program entry, the real installation and the real
// guard.
//
// Each line of standard input is one command, and each answer is one line; see answer() for the commands.
// While it waits for a command it sends its guard a sign of life every second, unless it was told to be mute.

#include "Fenwhirl/Application/FenwhirlApp.h"
#include "Fenwhirl/HelperClient/EmergencyHandBack.h"
#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/HelperClient/RetainedHelper.h"
#include "Fenwhirl/Platform/Toolkit/AlternateSignalStack.h"

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <poll.h>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Fenwhirl {

namespace {

std::unique_ptr<EmergencyHandBack> emergency;
std::optional<RetainedHelper> kept;
bool isMute = false;

std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::string yesOrNo(bool value) {
    return value ? "yes" : "no";
}

// Parses the fans of a "fans" command. "0 1 =2" means: hand back fans 0 and 1, and fan 2 is pinned. Without
// any word it is every fan; "none" is no fan.
HandBack handBack(const std::vector<std::string>& words) {
    if (!HelperClient::isInstalled()) {
        return {};
    }
    if (words.empty()) {
        return {.scope = HandBack::Scope::allFans, .indices = {}};
    }
    HandBack result = {.scope = HandBack::Scope::indices, .indices = {}};
    for (const std::string& word : words) {
        if (word.starts_with('=')) {
            result.pinned.push_back(std::atoi(word.c_str() + 1));
        } else if (word != "none") {
            result.indices.push_back(std::atoi(word.c_str()));
        }
    }
    return result;
}

// Overflows the stack. The read of `page` after the call keeps the compiler from turning the recursion into a loop.
[[gnu::noinline]] int endless(int depth) {
    volatile char page[4096] = {};
    page[depth % 4096] = static_cast<char>(depth);
    return depth < 0 ? 0 : endless(depth + 1) + page[0];
}

volatile int* volatile nowhere = nullptr;

[[noreturn]] void crash(const std::string& how) {
    if (how == "write") {
        *nowhere = 1;
    } else if (how == "trap") {
        (void)raise(SIGTRAP);
    } else if (how == "overflow") {
        endless(0);
    } else if (how == "thread") {
        std::thread([] {
            const AlternateSignalStack stack;
            endless(0);
        }).join();
    }
    std::abort();
}

std::string answer(const std::vector<std::string>& words) {
    const std::string& command = words.front();
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    if (command == "installed") {
        return yesOrNo(HelperClient::isInstalled());
    }
    if (command == "version") {
        return HelperClient::installedVersion().value_or("absent");
    }
    if (command == "run") {
        return yesOrNo(HelperClient::run(rest));
    }
    if (command == "output") {
        return std::to_string(HelperClient::output(rest).size());
    }
    if (command == "keep") {
        kept.emplace(std::string(HelperClient::helperPath));
        return "yes";
    }
    if (command == "run-kept") {
        return yesOrNo(kept->run(rest));
    }
    if (command == "install-command") {
        return HelperClient::installCommand(rest.front()).value_or("absent");
    }
    if (command == "install") {
        return yesOrNo(HelperClient::install());
    }
    if (command == "administrator") {
        return yesOrNo(HelperClient::runAsAdministrator(rest.front()));
    }
    if (command == "watch") {
        emergency = EmergencyHandBack::forThisInstallation();
        return "yes";
    }
    if (command == "background") { // starts a helper run without waiting for it
        std::thread([rest] { (void)HelperClient::run(rest); }).detach();
        return "yes";
    }
    if (command == "fans") {
        emergency->update(handBack(rest));
        return "yes";
    }
    if (command == "alive") {
        emergency->keepAlive();
        return "yes";
    }
    if (command == "mute" || command == "speak") {
        isMute = command == "mute";
        return "yes";
    }
    if (command == "finish") {
        emergency->finish();
        return "yes";
    }
    if (command == "crash") {
        crash(rest.empty() ? "" : rest.front());
    }
    return "unknown command";
}

// Waits for the next command. Returns nothing at the end of standard input.
std::optional<std::string> nextLine() {
    static std::string received;
    pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    for (;;) {
        if (const auto end = received.find('\n'); end != std::string::npos) {
            const std::string line = received.substr(0, end);
            received.erase(0, end + 1);
            return line;
        }
        if (poll(&input, 1, 1000) <= 0) {
            if (emergency && !isMute) {
                emergency->keepAlive();
            }
            continue;
        }
        char buffer[1024];
        const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0) {
            return std::nullopt;
        }
        received.append(buffer, static_cast<std::size_t>(count));
    }
}

} // namespace

int fenwhirl_app_main(int argc, char**) {
    std::cout << "ready " << getpid() << ' ' << argc << std::endl;
    while (const auto line = nextLine()) {
        if (*line == "quit") {
            break;
        }
        std::cout << answer(wordsOf(*line)) << std::endl;
    }
    emergency.reset();
    return 0;
}

} // namespace Fenwhirl
