// The process table where the listing is the tool's own output: what macOS uses, tried on every system.

#pragma once

#include "Fenwhirl/Platform/ProcessListingTool.h"
#include "Fenwhirl/Platform/ProcessTable.h"

class ProcessListingTable final : public ProcessTable {
public:
    explicit ProcessListingTable(ProcessTableSettings settings);

    std::optional<QByteArray> listing() override;
    // Asked for now: the listing does not tell.
    [[nodiscard]] std::optional<ProcessStart> startWhenListed(std::int32_t pid) const override;
    void cancel() override;

private:
    ProcessTableSettings settings_;
    Cancellation cancelled_;
};

// The start of a process as the kernel of macOS tells it, in microseconds since 1970; no start lies before.
[[nodiscard]] ProcessStart startInMicroseconds(std::int64_t seconds, std::int64_t microseconds);
