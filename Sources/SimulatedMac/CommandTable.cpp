#include "SimulatedMac/CommandHandlers.h"
#include "SimulatedMac/TextParsing.h"

#include <algorithm>
#include <array>

namespace simulated {

namespace {

constexpr std::array<Command, 31> commands{{
    {"help", "", "this list", runHelp},
    {"state", "", "everything that moves, in one line of name=value pairs", runState},
    {"show", "", "the same for people: fans and temperatures as a table", runShow},
    {"heat", "host | LOAD% | WATTS [GRAPHICS] | course FILE",
     "follow this computer's load, a constant load or power, or a recorded course (lines of SECONDS WATTS "
     "[GRAPHICS])",
     runHeat},
    {"speed", "N", "let simulated time run N times as fast as real time; 0 makes it stand still", runSpeed},
    {"advance", "SECONDS", "move simulated time on at once", runAdvance},
    {"sleep", "", "the machine sleeps: no heat, fans at rest; requests are still answered", runSleep},
    {"wake", "", "it wakes: the firmware has forgotten every manual mode, the mask and the unlock", runWake},
    {"unlock", "MILLISECONDS | never",
     "how long after Ftst=1 mode keys become writable (real time; usually 500)", runUnlock},
    {"get", "KEY", "type, bytes and value that readers are shown", runGet},
    {"keys", "[PREFIX]", "all keys in the SMC's order, or those that begin so", runKeys},
    {"set", "KEY NUMBER", "pin a key to a number: readers see it until unpin, whatever the machine does",
     runSet},
    {"pin", "KEY HEXBYTES", "the same with the value's own bytes", runPin},
    {"write", "KEY NUMBER", "write a key as another program of root would, by the rules for every client",
     runWrite},
    {"unpin", "KEY | all", "show the machine's own value again", runUnpin},
    {"vanish", "KEY", "the key does not exist any more (result 0x84, its index too)", runVanish},
    {"unreadable", "KEY [RESULT]", "reads fail with this result (hexadecimal; usually 85)", runUnreadable},
    {"restore", "KEY | all", "end vanish, unreadable, pins and refusals", runRestore},
    {"define", "KEY TYPE SIZE ATTRIBUTES HEXBYTES",
     "add a key or replace one (attributes: 80 readable, 40 writable)", runDefine},
    {"refuse", "KEY|all [RESULT | kernel]",
     "refuse writes with this result (usually 86) or as the kernel does", runRefuse},
    {"accept", "KEY | all", "end such refusals", runAccept},
    {"fault", "KIND [N] [after N] [times N] [key KEY] [command read|write|info|index]",
     "spoil answers: silence, hangup, length BYTES, kernel HEX, result HEX, delay MILLISECONDS", runFault},
    {"delay", "MILLISECONDS", "answer everything so much later", runDelay},
    {"silence", "", "take requests and never answer", runSilence},
    {"hangup", "", "close the connection instead of answering", runHangUp},
    {"answer", "", "answer properly again", runAnswer},
    {"log", "[FROM]", "every write since the start, or from that number on", runLog},
    {"wait", "SECONDS", "answer after so much simulated time", runWait},
    {"await",
     "write KEY|any [since N] [within S] | value KEY above|below NUMBER [within S] | requests N [within S]",
     "answer when it has happened; an error after S real seconds (usually 10)", runAwait},
    {"say", "TEXT", "answer with the text", runSay},
    {"quit", "", "end the simulation and remove the socket", runQuit},
}};

} // namespace

std::span<const Command> commandTable() {
    return commands;
}

std::string commandHelp() {
    std::string text;
    for (const Command& command : commands) {
        text += "  " + std::string(command.name);
        if (!command.arguments.empty()) {
            text += " " + std::string(command.arguments);
        }
        text += "\n      " + std::string(command.summary) + "\n";
    }
    return text;
}

CommandOutcome runCommand(CommandContext& context, std::string_view line, Instant now) {
    // Answers repeat words of the command, so reject anything that could control a terminal or break a line.
    const auto isControl = [](char character) {
        return character != '\t' && (static_cast<unsigned char>(character) < 0x20 || character == 0x7F);
    };
    if (std::any_of(line.begin(), line.end(), isControl)) {
        return failed("control character in the command");
    }
    const auto words = splitWords(line);
    if (words.empty() || words.front().starts_with('#')) {
        return std::string();
    }
    const auto* found = std::find_if(commands.begin(), commands.end(),
                                     [&](const Command& command) { return command.name == words.front(); });
    if (found == commands.end()) {
        return failed("unknown command \"" + std::string(words.front()) + "\"; help lists them");
    }
    context.mac.catchUp(now);
    return found->run(context, std::span(words).subspan(1), now);
}

CommandOutcome runHelp(CommandContext& /*context*/, Words /*words*/, Instant /*now*/) {
    return commandHelp() + ok();
}

CommandOutcome runSay(CommandContext& /*context*/, Words words, Instant /*now*/) {
    std::string text;
    for (const std::string_view word : words) {
        text += (text.empty() ? "" : " ") + std::string(word);
    }
    return ok(text);
}

CommandOutcome runQuit(CommandContext& context, Words /*words*/, Instant /*now*/) {
    context.quit = true;
    return ok("bye");
}

} // namespace simulated
