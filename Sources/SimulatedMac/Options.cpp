#include "SimulatedMac/Options.h"

#include "SimulatedMac/Commands.h"
#include "SimulatedMac/TextParsing.h"

namespace simulated {

namespace {

constexpr std::string_view introduction =
    R"(simulated-mac: a Mac's SMC in software, for computers that have none.

  simulated-mac [--machine NAME] [--heat SOURCE] [--speed N] [--script FILE]
                [--write-log FILE] [--quit-at-end-of-input]
  simulated-mac --list
  simulated-mac --help

  --machine NAME   the Mac to simulate (usually MacBookPro11,4); --list names them all
  --heat SOURCE    what warms it: "host" (usually) follows the processor load of this
                   computer, "50%" is half of its own all the time, a number is so many watts
                   ("20", or "20 5" with 5 W of graphics), "course FILE" plays a file of lines
                   SECONDS WATTS [GRAPHICS]
  --speed N        simulated time runs N times as fast as real time; 0 lets it stand still
  --script FILE    run the commands in this file; they run beside those typed in
  --write-log FILE append a line for every write that reaches the SMC
  --quit-at-end-of-input   end when standard input ends

It needs root, answers at /run/fenwhirl/AppleSMC, and ends on SIGINT, SIGTERM or the command
quit. When it is ready for clients it prints one line that begins with "ready". To run one of
your own, without root or beside another one, give it a private /run:

  unshare -rm sh -c 'mount -t tmpfs tmpfs /run && exec simulated-mac'

Commands are read from standard input, one a line. The last line of every answer begins with
"ok" or "error:". Keys are named as the SMC names them; missing trailing blanks are added, so
that "FS!" will do. Commands:

)";

// Splits the value of an option that may contain several words into strings of their own.
std::vector<std::string> ownedWords(std::string_view text) {
    std::vector<std::string> owned;
    for (const std::string_view word : splitWords(text)) {
        owned.emplace_back(word);
    }
    return owned;
}

} // namespace

std::optional<Options> parseOptions(std::span<const std::string_view> arguments, std::string& error) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view name = arguments[i];
        if (name == "--list") {
            options.list = true;
            continue;
        }
        if (name == "--help" || name == "-h") {
            options.help = true;
            continue;
        }
        if (name == "--quit-at-end-of-input") {
            options.quitAtEndOfInput = true;
            continue;
        }
        const bool known = name == "--machine" || name == "--heat" || name == "--speed" ||
                           name == "--script" || name == "--write-log";
        if (!known) {
            error = "unknown option \"" + std::string(name) + "\"";
            return std::nullopt;
        }
        if (i + 1 == arguments.size()) {
            error = std::string(name) + " needs a value";
            return std::nullopt;
        }
        const std::string value(arguments[++i]);
        if (name == "--machine") {
            options.machine = value;
        } else if (name == "--heat") {
            options.heat = ownedWords(value);
        } else if (name == "--script") {
            options.script = value;
        } else if (name == "--write-log") {
            options.writeLog = value;
        } else {
            const auto speed = parseNumber(value);
            if (!speed || *speed < 0 || *speed > 10'000) {
                error = "--speed takes a number from 0 to 10000";
                return std::nullopt;
            }
            options.speed = *speed;
        }
    }
    return options;
}

std::string usageText() {
    return std::string(introduction) + commandHelp();
}

} // namespace simulated
