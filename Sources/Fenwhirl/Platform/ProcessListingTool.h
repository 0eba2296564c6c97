// Running the system's process lister, with an end in any case.

#pragma once

#include "Fenwhirl/Platform/ChildProcess.h"

#include <QByteArray>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

// Ends waits on another thread, for good. `cancel` belongs to one thread, the rest to any.
class Cancellation {
public:
    void cancel();
    [[nodiscard]] bool isCancelled() const;
    // Waits for that long; false when cancelled before or meanwhile.
    [[nodiscard]] bool waitFor(std::chrono::milliseconds duration) const;
    // Becomes readable when cancelled; -1 when the system had no pipe to spare, and then only time ends
    // waits.
    [[nodiscard]] int descriptor() const;

private:
    // Cancelled is when the end that nobody writes to is closed.
    std::optional<Pipe> pipe_ = Pipe::make();
};

// What the tool printed when run with these arguments and the environment LC_ALL=C, LANG=C; its error texts
// go nowhere, its exit status is not looked at. Absent when it cannot be launched, and when it was killed
// because the limit passed or the call was cancelled. Blocks; any thread.
[[nodiscard]] std::optional<QByteArray> runListingTool(const std::string& tool,
                                                       const std::vector<std::string>& arguments,
                                                       std::chrono::milliseconds limit,
                                                       const Cancellation& cancellation);
