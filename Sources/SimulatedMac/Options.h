// The command line of simulated-mac.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulated {

struct Options {
    static constexpr std::string_view usualMachine = "MacBookPro11,4";

    std::string machine{usualMachine};
    std::vector<std::string> heat{"host"}; // the words of a heat command
    double speed = 1;
    std::optional<std::string> script;   // a file of commands
    std::optional<std::string> writeLog; // a file that receives a line for every write
    bool quitAtEndOfInput = false;
    bool list = false;
    bool help = false;
};

// Parses the arguments after the program's name. Absent when they are wrong; `error` then says why.
[[nodiscard]] std::optional<Options> parseOptions(std::span<const std::string_view> arguments,
                                                  std::string& error);

// The text of --help.
[[nodiscard]] std::string usageText();

} // namespace simulated
