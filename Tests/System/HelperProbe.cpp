// An application that is nothing but its side of the helper, steered line by line: takes the place of the
// real application's library beside a copy of the executable, so that the system tests see the true program
// entry, the true installation and the true guard without an interface.
//
// Each line of standard input is one command; each answer is one line. See `answer` for the commands.

#include "Fenwhirl/Application/FenwhirlApp.h"
#include "Fenwhirl/HelperClient/EmergencyHandBack.h"
#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/HelperClient/KeptHelper.h"
#include "Fenwhirl/Platform/AlternateSignalStack.h"

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

std::unique_ptr<EmergencyHandBack> emergency;
std::optional<KeptHelper> kept;

std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

std::string yesOrNo(bool value) {
    return value ? "yes" : "no";
}

// "0 1 =2": fans 0 and 1 were read, fan 2 is configured and pinned.
HandBack handBack(const std::vector<std::string>& words) {
    std::vector<int> read;
    std::vector<HandBackRule::ConfiguredFan> configured;
    for (const std::string& word : words) {
        if (word.starts_with('='))
            configured.push_back({.index = std::atoi(word.c_str() + 1), .isConstant = true});
        else
            read.push_back(std::atoi(word.c_str()));
    }
    return HandBackRule::decide(HelperClient::isInstalled(), read, configured);
}

// Uses up the stack; not to be made a loop.
[[gnu::noinline]] int endless(int depth) {
    volatile char page[4096] = {};
    page[depth % 4096] = static_cast<char>(depth);
    return depth < 0 ? 0 : endless(depth + 1) + page[0];
}

volatile int* volatile nowhere = nullptr;

[[noreturn]] void crash(const std::string& how) {
    if (how == "write")
        *nowhere = 1;
    else if (how == "overflow")
        endless(0);
    else if (how == "thread")
        std::thread([] {
            const AlternateSignalStack stack;
            endless(0);
        }).join();
    std::abort();
}

std::string answer(const std::vector<std::string>& words) {
    const std::string& command = words.front();
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    if (command == "installed")
        return yesOrNo(HelperClient::isInstalled());
    if (command == "version")
        return HelperClient::installedVersion().value_or("absent");
    if (command == "run")
        return yesOrNo(HelperClient::run(rest));
    if (command == "output")
        return std::to_string(HelperClient::output(rest).size());
    if (command == "keep") {
        kept.emplace(std::string(HelperClient::helperPath));
        return "yes";
    }
    if (command == "run-kept")
        return yesOrNo(kept->run(rest));
    if (command == "install")
        return yesOrNo(HelperClient::install());
    if (command == "administrator")
        return yesOrNo(HelperClient::runAsAdministrator(rest.front()));
    if (command == "watch") {
        emergency = EmergencyHandBack::forThisInstallation();
        return "yes";
    }
    if (command == "background") { // a helper run that is not waited for
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
    if (command == "finish") {
        emergency->finish();
        return "yes";
    }
    if (command == "crash")
        crash(rest.empty() ? "" : rest.front());
    return "unknown command";
}

} // namespace

int fenwhirl_app_main(int argc, char**) {
    std::cout << "ready " << getpid() << ' ' << argc << std::endl;
    for (std::string line; std::getline(std::cin, line) && line != "quit";)
        std::cout << answer(wordsOf(line)) << std::endl;
    emergency.reset();
    return 0;
}
