// The functions behind the command table, grouped by the file that defines them. Each receives the words
// after the command's name and validates them itself.

#pragma once

#include "SimulatedMac/Commands.h"

#include <span>
#include <string>
#include <string_view>

namespace simulated {

using Words = std::span<const std::string_view>;

[[nodiscard]] inline std::string ok(std::string_view text = {}) {
    return text.empty() ? std::string("ok") : "ok " + std::string(text);
}

[[nodiscard]] inline std::string failed(std::string_view text) {
    return "error: " + std::string(text);
}

// KeyCommands.cpp
CommandOutcome runGet(CommandContext& context, Words words, Instant now);
CommandOutcome runKeys(CommandContext& context, Words words, Instant now);
CommandOutcome runSet(CommandContext& context, Words words, Instant now);
CommandOutcome runPin(CommandContext& context, Words words, Instant now);
CommandOutcome runWrite(CommandContext& context, Words words, Instant now);
CommandOutcome runUnpin(CommandContext& context, Words words, Instant now);
CommandOutcome runVanish(CommandContext& context, Words words, Instant now);
CommandOutcome runUnreadable(CommandContext& context, Words words, Instant now);
CommandOutcome runRestore(CommandContext& context, Words words, Instant now);
CommandOutcome runDefine(CommandContext& context, Words words, Instant now);
CommandOutcome runRefuse(CommandContext& context, Words words, Instant now);
CommandOutcome runAccept(CommandContext& context, Words words, Instant now);

// MachineCommands.cpp
CommandOutcome runState(CommandContext& context, Words words, Instant now);
CommandOutcome runShow(CommandContext& context, Words words, Instant now);
CommandOutcome runHeat(CommandContext& context, Words words, Instant now);
CommandOutcome runSpeed(CommandContext& context, Words words, Instant now);
CommandOutcome runAdvance(CommandContext& context, Words words, Instant now);
CommandOutcome runSleep(CommandContext& context, Words words, Instant now);
CommandOutcome runWake(CommandContext& context, Words words, Instant now);
CommandOutcome runUnlock(CommandContext& context, Words words, Instant now);

// AnswerCommands.cpp
CommandOutcome runFault(CommandContext& context, Words words, Instant now);
CommandOutcome runDelay(CommandContext& context, Words words, Instant now);
CommandOutcome runSilence(CommandContext& context, Words words, Instant now);
CommandOutcome runHangUp(CommandContext& context, Words words, Instant now);
CommandOutcome runAnswer(CommandContext& context, Words words, Instant now);

// AwaitCommands.cpp
CommandOutcome runLog(CommandContext& context, Words words, Instant now);
CommandOutcome runWait(CommandContext& context, Words words, Instant now);
CommandOutcome runAwait(CommandContext& context, Words words, Instant now);

// CommandTable.cpp
CommandOutcome runHelp(CommandContext& context, Words words, Instant now);
CommandOutcome runSay(CommandContext& context, Words words, Instant now);
CommandOutcome runQuit(CommandContext& context, Words words, Instant now);

} // namespace simulated
