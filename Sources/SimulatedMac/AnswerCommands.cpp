#include "FenwhirlCore/SMCRecord.h"
#include "SimulatedMac/CommandHandlers.h"
#include "SimulatedMac/TextParsing.h"

#include <optional>

namespace simulated {

namespace {

constexpr std::uint64_t longestDelayMilliseconds = 3'600'000;

enum class Number { none, decimal, hexadecimal };

struct FaultKeyword {
    std::string_view word;
    FaultKind kind;
    Number number;
    std::uint64_t most; // the largest argument
};

constexpr std::array<FaultKeyword, 6> kindWords{{
    {"silence", FaultKind::silence, Number::none, 0},
    {"hangup", FaultKind::hangUp, Number::none, 0},
    {"length", FaultKind::wrongLength, Number::decimal, AnswerFaults::longestReply},
    {"kernel", FaultKind::kernel, Number::hexadecimal, 0xFFFFFFFFU},
    {"result", FaultKind::result, Number::hexadecimal, 0xFF},
    {"delay", FaultKind::delay, Number::decimal, longestDelayMilliseconds},
}};

std::optional<std::uint8_t> commandCode(std::string_view word) {
    if (word == "read") {
        return Fenwhirl::SMCCommand::readKey;
    }
    if (word == "write") {
        return Fenwhirl::SMCCommand::writeKey;
    }
    if (word == "info") {
        return Fenwhirl::SMCCommand::keyInfo;
    }
    if (word == "index") {
        return Fenwhirl::SMCCommand::keyByIndex;
    }
    return std::nullopt;
}

// Reads one of "after N", "times N", "key KEY" and "command NAME". False when the value is malformed.
bool readLimit(AnswerFault& fault, std::string_view name, std::string_view value) {
    if (name == "after") {
        const auto number = parseWhole(value);
        fault.after = number.value_or(0);
        return number.has_value();
    }
    if (name == "times") {
        fault.times = parseWhole(value);
        return fault.times.has_value();
    }
    if (name == "key") {
        fault.key = parseFourCC(value);
        return fault.key.has_value();
    }
    if (name == "command") {
        fault.command = commandCode(value);
        return fault.command.has_value();
    }
    return false;
}

std::optional<AnswerFault> parseFault(Words words) {
    for (const FaultKeyword& kind : kindWords) {
        if (words.empty() || words[0] != kind.word) {
            continue;
        }
        AnswerFault fault{.kind = kind.kind, .times = {}, .key = {}, .command = {}};
        words = words.subspan(1);
        if (kind.number != Number::none) {
            std::optional<std::uint64_t> number;
            if (!words.empty()) {
                number = kind.number == Number::decimal ? parseWhole(words[0])
                                                        : std::optional<std::uint64_t>(parseHex(words[0]));
            }
            if (!number || *number > kind.most) {
                return std::nullopt;
            }
            fault.argument = static_cast<std::uint32_t>(*number);
            words = words.subspan(1);
        }
        for (; words.size() >= 2; words = words.subspan(2)) {
            if (!readLimit(fault, words[0], words[1])) {
                return std::nullopt;
            }
        }
        return words.empty() ? std::optional(fault) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

CommandOutcome runFault(CommandContext& context, Words words, Instant /*now*/) {
    const auto fault = parseFault(words);
    if (!fault) {
        return failed("expected KIND [N] [after N] [times N] [key KEY] [command NAME]; help lists the kinds");
    }
    context.faults.set(*fault);
    return ok(faultText(*fault));
}

CommandOutcome runDelay(CommandContext& context, Words words, Instant now) {
    if (words.size() != 1) {
        return failed("expected MILLISECONDS");
    }
    const std::array<std::string_view, 2> fault{"delay", words[0]};
    return runFault(context, fault, now);
}

CommandOutcome runSilence(CommandContext& context, Words /*words*/, Instant /*now*/) {
    context.faults.set({.kind = FaultKind::silence, .times = {}, .key = {}, .command = {}});
    return ok();
}

CommandOutcome runHangUp(CommandContext& context, Words /*words*/, Instant /*now*/) {
    context.faults.set({.kind = FaultKind::hangUp, .times = {}, .key = {}, .command = {}});
    return ok();
}

CommandOutcome runAnswer(CommandContext& context, Words /*words*/, Instant /*now*/) {
    context.faults.clear();
    return ok();
}

} // namespace simulated
