// Faults of the connection, for testing clients. An answer can come late, too short, too long, or as an
// error; it can also be missing, or replaced by the end of the connection.

#pragma once

#include "FenwhirlCore/SMCRecord.h"
#include "SimulatedMac/FourCC.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace simulated {

enum class FaultKind {
    none,
    silence,     // the request is received and never answered
    hangUp,      // the connection is closed instead of being answered
    wrongLength, // the reply packet has `argument` bytes instead of 84
    kernel,      // kernel return code `argument` and an empty record
    result,      // the correct answer, but with SMC result `argument`
    delay,       // the correct answer, `argument` milliseconds late
};

struct AnswerFault {
    FaultKind kind = FaultKind::none;
    std::uint32_t argument = 0;
    std::uint64_t after = 0;             // number of matching requests that are answered correctly first
    std::optional<std::uint64_t> times;  // number of requests that then fail; absent = all
    std::optional<FourCC> key;           // only requests for this key
    std::optional<std::uint8_t> command; // only this SMCCommand
};

class AnswerFaults {
public:
    // Longest packet that a fault may send.
    static constexpr std::uint32_t longestReply = 4096;

    // Replaces the fault and restarts the count of matching requests.
    void set(const AnswerFault& fault);

    void clear() { set({}); }

    [[nodiscard]] const AnswerFault& current() const { return fault_; }

    // The fault to apply to this request: the current one, or `none`. Counts the request if it matches.
    [[nodiscard]] AnswerFault decide(const Fenwhirl::SMCParam& request);

private:
    AnswerFault fault_;
    std::uint64_t matched_ = 0;
};

// The fault as one word for the state line, for example "delay:3000".
[[nodiscard]] std::string faultText(const AnswerFault& fault);

} // namespace simulated
