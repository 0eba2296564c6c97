// A queue of commands from one source: a script or standard input. A command that has to wait blocks those
// behind it.

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
    // Called with the command and its answer, in order. It is not called for lines without an answer.
    using Answered = std::function<void(const std::string& line, const std::string& answer)>;

    void add(std::string line) { lines_.push_back(std::move(line)); }

    // Runs every command that can run now.
    void run(CommandContext& context, Instant now, const Answered& answered);

    // True while a command waits; run() must then be called again soon.
    [[nodiscard]] bool isWaiting() const { return pending_.has_value(); }

private:
    std::deque<std::string> lines_;
    std::optional<Pending> pending_; // the first line, when it waits
};

// Splits a stream of bytes into lines. Longer lines are truncated to 64 KiB.
class LineCutter {
public:
    // Calls `line` for every line that these bytes complete. Carriage returns before the line end are
    // removed.
    void add(std::string_view bytes, const std::function<void(std::string)>& line);

    // The last line, if the stream did not end with a line end.
    [[nodiscard]] std::optional<std::string> finish();

private:
    std::string part_;
};

} // namespace simulated
