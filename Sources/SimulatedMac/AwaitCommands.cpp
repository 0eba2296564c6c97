#include "SimulatedMac/CommandHandlers.h"
#include "SimulatedMac/TextParsing.h"
#include "SimulatedMac/ValueCoding.h"

#include <algorithm>
#include <optional>

namespace simulated {

namespace {

constexpr double defaultTimeoutSeconds = 10;

// The words before "since N" and "within S", and those two numbers.
struct AwaitWords {
    std::vector<std::string_view> subject;
    std::optional<std::uint64_t> since;
    double withinSeconds = defaultTimeoutSeconds;
};

std::optional<AwaitWords> parseAwait(Words words) {
    AwaitWords parsed;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool hasValue = i + 1 < words.size();
        if (words[i] == "since" && hasValue) {
            parsed.since = parseWhole(words[++i]);
            if (!parsed.since) {
                return std::nullopt;
            }
        } else if (words[i] == "within" && hasValue) {
            const auto seconds = parseNumber(words[++i]);
            if (!seconds || *seconds < 0) {
                return std::nullopt;
            }
            parsed.withinSeconds = *seconds;
        } else {
            parsed.subject.push_back(words[i]);
        }
    }
    return parsed;
}

// Waits until `happened` returns an answer, or fails after `withinSeconds`.
CommandOutcome patiently(double withinSeconds, Instant now,
                         std::function<std::optional<std::string>(Instant)> happened) {
    const double end = now.steadySeconds + withinSeconds;
    return Pending{[end, happened = std::move(happened)](Instant moment) -> std::optional<std::string> {
        if (auto answer = happened(moment)) {
            return answer;
        }
        if (moment.steadySeconds >= end) {
            return failed("it did not happen in time");
        }
        return std::nullopt;
    }};
}

CommandOutcome awaitWrite(CommandContext& context, const AwaitWords& words, Instant now) {
    const bool any = words.subject[1] == "any";
    const auto code = any ? std::optional<FourCC>(0) : parseFourCC(words.subject[1]);
    if (!code) {
        return failed("expected a key or any");
    }
    const Mac& mac = context.mac;
    const std::uint64_t since = words.since.value_or(mac.writes().last());
    return patiently(words.withinSeconds, now,
                     [&mac, any, code = *code, since](Instant) -> std::optional<std::string> {
                         const WriteLog& log = mac.writes();
                         for (auto entry = log.after(since); entry != log.entries().end(); ++entry) {
                             if (any || entry->code == code) {
                                 return ok(writeEntryText(*entry));
                             }
                         }
                         return std::nullopt;
                     });
}

CommandOutcome awaitValue(CommandContext& context, const AwaitWords& words, Instant now) {
    const auto code = parseFourCC(words.subject[1]);
    const auto number = parseNumber(words.subject[3]);
    const bool above = words.subject[2] == "above";
    if (!code || context.mac.keys().find(*code) == nullptr || !number ||
        (!above && words.subject[2] != "below")) {
        return failed("expected KEY above|below NUMBER");
    }
    Mac& mac = context.mac;
    return patiently(
        words.withinSeconds, now,
        [&mac, code = *code, above, limit = *number](Instant moment) -> std::optional<std::string> {
            mac.catchUp(moment);
            const Key* const key = mac.keys().find(code);
            const auto value = decodeValue(key->record.type, key->shown());
            if (!value || !(above ? *value > limit : *value < limit)) {
                return std::nullopt;
            }
            return ok("value=" + fixedText(*value, 2));
        });
}

} // namespace

CommandOutcome runLog(CommandContext& context, Words words, Instant /*now*/) {
    const auto from = words.empty() ? std::optional<std::uint64_t>(1) : parseWhole(words[0]);
    if (words.size() > 1 || !from) {
        return failed("expected the number of the first write");
    }
    std::string text;
    std::size_t count = 0;
    const WriteLog& log = context.mac.writes();
    for (auto entry = log.after(*from == 0 ? 0 : *from - 1); entry != log.entries().end(); ++entry) {
        text += writeEntryText(*entry) + "\n";
        ++count;
    }
    return text + ok(std::to_string(count) + " writes, last=" + std::to_string(context.mac.writes().last()));
}

CommandOutcome runWait(CommandContext& context, Words words, Instant /*now*/) {
    const auto seconds = words.size() == 1 ? parseNumber(words[0]) : std::nullopt;
    if (!seconds || *seconds < 0) {
        return failed("expected SECONDS");
    }
    if (context.mac.speed() == 0) {
        return failed("time stands still; advance moves it");
    }
    Mac& mac = context.mac;
    const double end = mac.state().seconds + *seconds;
    return Pending{[&mac, end](Instant moment) -> std::optional<std::string> {
        mac.catchUp(moment);
        return mac.state().seconds >= end ? std::optional(ok()) : std::nullopt;
    }};
}

CommandOutcome runAwait(CommandContext& context, Words words, Instant now) {
    const auto parsed = parseAwait(words);
    if (parsed && parsed->subject.size() == 2 && parsed->subject[0] == "write") {
        return awaitWrite(context, *parsed, now);
    }
    if (parsed && parsed->subject.size() == 4 && parsed->subject[0] == "value") {
        return awaitValue(context, *parsed, now);
    }
    if (parsed && parsed->subject.size() == 2 && parsed->subject[0] == "requests") {
        if (const auto count = parseWhole(parsed->subject[1])) {
            return patiently(
                parsed->withinSeconds, now,
                [&counters = context.counters, count = *count](Instant) -> std::optional<std::string> {
                    return counters.requests >= count ? std::optional(ok()) : std::nullopt;
                });
        }
    }
    return failed("expected write KEY|any, value KEY above|below NUMBER, or requests N");
}

} // namespace simulated
