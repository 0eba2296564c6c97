// The command language: one command per line, for people and for test programs alike.
//
// Every command is answered by a line that begins with "ok" or "error:". Some commands print a block of lines
// before it, and none of those begins that way, so a reader that stops at such a line stays in step. The
// table in CommandTable.cpp defines the language; `help` and `--help` print it.

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
    bool quit = false; // set by a command that ends the program
};

// A command that cannot answer yet. `check` is called from time to time and returns the answer once there is
// one. It must not outlive the context.
struct Pending {
    std::function<std::optional<std::string>(Instant)> check;
};

// Either the answer, whose last line begins with "ok" or "error:" and has no line end, or what to wait for.
struct CommandOutcome {
    std::string answer;
    std::optional<Pending> pending;

    CommandOutcome(std::string text) : answer(std::move(text)) {} // NOLINT(google-explicit-constructor)

    CommandOutcome(Pending wait) : pending(std::move(wait)) {} // NOLINT(google-explicit-constructor)
};

struct Command {
    std::string_view name;
    std::string_view arguments; // as help shows them
    std::string_view summary;
    CommandOutcome (*run)(CommandContext& context, std::span<const std::string_view> arguments, Instant now);
};

// All commands, in the order in which help shows them.
[[nodiscard]] std::span<const Command> commandTable();

// Runs one line. The answer to an empty line or a comment ("#…") is empty.
[[nodiscard]] CommandOutcome runCommand(CommandContext& context, std::string_view line, Instant now);

// The commands with their summaries: two lines each, every line ended by a line end.
[[nodiscard]] std::string commandHelp();

} // namespace simulated
