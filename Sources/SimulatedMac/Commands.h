// The command language: one command a line, for people and for test programs alike.
//
// Every command is answered by one line that begins with "ok" or "error:"; some print a block of lines before
// it (none of which begins like that), so whoever reads up to such a line is in step. The table in
// CommandTable.cpp is the language: `help` and `--help` print it.

#pragma once

#include "SimulatedMac/AnswerFaults.h"
#include "SimulatedMac/Mac.h"
#include "SimulatedMac/SMCServer.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simulated {

// What commands act on.
struct CommandContext {
    Mac& mac;
    AnswerFaults& faults;
    const ServerCounters& counters;
    bool quit = false; // a command asked the program to end
};

// A command that cannot answer yet. `check` is called from time to time and returns the answer when there is
// one; it must not outlive the context.
struct Pending {
    std::function<std::optional<std::string>(Instant)> check;
};

// The answer (its last line begins with "ok" or "error:", without line end), or what to wait for.
struct CommandOutcome {
    std::string answer;
    std::optional<Pending> pending;

    CommandOutcome(std::string text) : answer(std::move(text)) {} // NOLINT(google-explicit-constructor)

    CommandOutcome(Pending wait) : pending(std::move(wait)) {} // NOLINT(google-explicit-constructor)
};

struct Command {
    std::string_view name;
    std::string_view arguments; // as shown to people
    std::string_view summary;
    CommandOutcome (*run)(CommandContext& context, std::span<const std::string_view> arguments, Instant now);
};

// All commands, in the order in which help shows them.
[[nodiscard]] std::span<const Command> commandTable();

// Runs one line. Empty lines and comments ("#…") have an empty answer.
[[nodiscard]] CommandOutcome runCommand(CommandContext& context, std::string_view line, Instant now);

// The commands with their explanations, one or two lines each, ended by a line end.
[[nodiscard]] std::string commandHelp();

} // namespace simulated
