#include "SimulatedMac/CommandHandlers.h"
#include "SimulatedMac/HeatChoice.h"
#include "SimulatedMac/StateText.h"
#include "SimulatedMac/TextParsing.h"

#include <optional>
#include <utility>

namespace simulated {

namespace {

constexpr double mostSkippedSeconds = 7 * 86400.0;
constexpr double mostSpeed = 10'000;

} // namespace

CommandOutcome runState(CommandContext& context, Words /*words*/, Instant now) {
    return ok(stateLine(context, now));
}

CommandOutcome runShow(CommandContext& context, Words /*words*/, Instant /*now*/) {
    return stateTable(context) + ok();
}

CommandOutcome runHeat(CommandContext& context, Words words, Instant now) {
    std::string error;
    auto source = makeHeatSource(words, context.mac, error);
    if (!source) {
        return failed(error);
    }
    context.mac.setHeatSource(std::move(source), now);
    return ok(context.mac.heatSource().name());
}

CommandOutcome runSpeed(CommandContext& context, Words words, Instant now) {
    const auto speed = words.size() == 1 ? parseNumber(words[0]) : std::nullopt;
    if (!speed || *speed < 0 || *speed > mostSpeed) {
        return failed("expected a number from 0 to 10000");
    }
    context.mac.setSpeed(*speed, now);
    return ok();
}

CommandOutcome runAdvance(CommandContext& context, Words words, Instant now) {
    const auto seconds = words.size() == 1 ? parseNumber(words[0]) : std::nullopt;
    if (!seconds || *seconds < 0 || *seconds > mostSkippedSeconds) {
        return failed("expected seconds, at most a week of them");
    }
    context.mac.skip(*seconds, now);
    return ok("time=" + fixedText(context.mac.state().seconds, 3));
}

CommandOutcome runSleep(CommandContext& context, Words /*words*/, Instant now) {
    context.mac.fallAsleep(now);
    return ok();
}

CommandOutcome runWake(CommandContext& context, Words /*words*/, Instant now) {
    context.mac.wakeUp(now);
    return ok();
}

CommandOutcome runUnlock(CommandContext& context, Words words, Instant /*now*/) {
    if (words.size() == 1 && words[0] == "never") {
        context.mac.fans().setUnlockSeconds(std::nullopt);
        return ok();
    }
    const auto milliseconds = words.size() == 1 ? parseNumber(words[0]) : std::nullopt;
    if (!milliseconds || *milliseconds < 0) {
        return failed("expected MILLISECONDS or never");
    }
    context.mac.fans().setUnlockSeconds(*milliseconds / 1000);
    return ok();
}

} // namespace simulated
