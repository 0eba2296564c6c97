// Commands that come one after another from one place: a script or standard input. A command that has to
// wait holds up those behind it.

#pragma once

#include "SimulatedMac/Commands.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace simulated {

class CommandStream {
public:
    // Called with the command and its answer, in order; never for lines without an answer.
    using Answered = std::function<void(const std::string& line, const std::string& answer)>;

    void add(std::string line) { lines_.push_back(std::move(line)); }

    // Runs what can be run now.
    void run(CommandContext& context, Instant now, const Answered& answered);

    // True while a command waits: run() has to be called again before long.
    [[nodiscard]] bool isWaiting() const { return pending_.has_value(); }

private:
    std::deque<std::string> lines_;
    std::optional<Pending> pending_; // of the first line
};

// Cuts a stream of bytes into lines. Lines longer than 64 KiB are cut there.
class LineCutter {
public:
    // Calls `line` for every line that these bytes complete; carriage returns before the line end go away.
    void add(std::string_view bytes, const std::function<void(std::string)>& line);

    // The last line, if it had no line end.
    [[nodiscard]] std::optional<std::string> finish();

private:
    std::string part_;
};

} // namespace simulated
