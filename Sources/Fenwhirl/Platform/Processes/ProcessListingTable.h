// A process table that returns the tool's output unchanged. macOS uses it; the tests run it on every system.

#pragma once

#include "Fenwhirl/Platform/Processes/ProcessListingTool.h"
#include "Fenwhirl/Platform/Processes/ProcessTable.h"

namespace Fenwhirl {

class ProcessListingTable final : public ProcessTable {
public:
    explicit ProcessListingTable(ProcessTableSettings settings);

    std::optional<QByteArray> listing() override;
    // Asks the system at the time of the call, because the listing does not include the start.
    [[nodiscard]] std::optional<ProcessStart> startWhenListed(std::int32_t pid) const override;
    void cancel() override;

private:
    ProcessTableSettings settings_;
    Cancellation cancelled_;
};

// Converts a start time as the macOS kernel reports it to microseconds since 1970. No process starts before
// 1970.
[[nodiscard]] ProcessStart startInMicroseconds(std::int64_t seconds, std::int64_t microseconds);

} // namespace Fenwhirl
