// The table of `--self-check`: named checks, run one after another, a line of plain text for each.
//
//   pass  SMC opened              0.31 ms
//   FAIL  helper mode             0755 instead of 4755
//   skip  helper version          there is no helper
//
// For developers, hence English in every language. Lines are made to be pasted: whatever a detail holds, it
// stays on its line and steers no terminal.
//
// Threads: main thread only; checks block it.

#pragma once

#include "Fenwhirl/Platform/CheckResult.h"

#include <QString>

#include <chrono>
#include <functional>
#include <vector>

namespace Fenwhirl {

struct SelfCheck {
    QString name;
    std::function<CheckResult()> run;
};

struct SelfCheckCounts {
    int passed = 0;
    int failed = 0;
    int skipped = 0;
    bool isComplete = true; // every check was run and every line printed

    [[nodiscard]] bool isGood() const { return failed == 0 && isComplete; }
};

// `print` gets each line, without its end, as soon as it is known, and says whether it could be printed;
// after one that could not, as when `shouldEnd` answers yes before a check, no further check is run.
[[nodiscard]] SelfCheckCounts runSelfChecks(const std::vector<SelfCheck>& checks,
                                            const std::function<bool(const QString& line)>& print,
                                            const std::function<bool()>& shouldEnd);

[[nodiscard]] QString selfCheckLine(const QString& name, const CheckResult& result);
[[nodiscard]] QString selfCheckSummary(const SelfCheckCounts& counts);

// "0.31 ms", the same under every locale.
[[nodiscard]] QString millisecondsText(std::chrono::duration<double, std::milli> time);

} // namespace Fenwhirl
