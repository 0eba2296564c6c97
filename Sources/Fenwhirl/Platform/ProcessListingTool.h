// Running the system's process lister, with an end in any case.

#pragma once

#include <QByteArray>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

// Ends waits from another thread, for good. Any thread.
class Cancellation {
public:
    void cancel();
    [[nodiscard]] bool isCancelled() const;
    // Waits for that long; false when cancelled before or meanwhile.
    [[nodiscard]] bool waitFor(std::chrono::milliseconds duration) const;

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    bool cancelled_ = false; // guarded by mutex_
};

// What the tool printed when run with these arguments and the environment LC_ALL=C, LANG=C; its error texts
// go nowhere, its exit status is not looked at. Absent when it cannot be launched, and when it was killed
// because the limit passed or the call was cancelled. Blocks; any thread.
[[nodiscard]] std::optional<QByteArray> runListingTool(const std::string& tool,
                                                       const std::vector<std::string>& arguments,
                                                       std::chrono::milliseconds limit,
                                                       const Cancellation& cancellation);
