// Runs the system's process lister with a time limit and a way to cancel it.

#pragma once

#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"

#include <QByteArray>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace Fenwhirl {

// Ends waits on another thread, permanently. `cancel` belongs to one thread; the rest may be called from any.
class Cancellation {
public:
    void cancel();
    [[nodiscard]] bool isCancelled() const;
    // Waits for that long; false when cancelled before or during the wait.
    [[nodiscard]] bool waitFor(std::chrono::milliseconds duration) const;
    // Becomes readable when cancelled. -1 when the system could not create a pipe; then waits end only when
    // their time is over.
    [[nodiscard]] int descriptor() const;

private:
    // Nothing is ever written: `cancel` closes the write end, which makes the read end readable.
    std::optional<Pipe> pipe_ = Pipe::make();
};

// Returns what the tool printed when run with these arguments and the environment LC_ALL=C, LANG=C. Its
// standard error is dropped and its exit status ignored. Absent when the tool cannot be started, and when it
// was killed because the time limit passed or the call was cancelled. Blocks; any thread.
[[nodiscard]] std::optional<QByteArray> runListingTool(const std::string& tool,
                                                       const std::vector<std::string>& arguments,
                                                       std::chrono::milliseconds limit,
                                                       const Cancellation& cancellation);

} // namespace Fenwhirl
