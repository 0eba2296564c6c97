// Misbehaviour of the connection, for testing clients: answers that come late, never, cut, too long, refused
// or not at all because the connection ends.

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
    silence,     // the request is taken and never answered
    hangUp,      // the connection is closed instead of an answer
    wrongLength, // the reply packet has `argument` bytes instead of 84
    kernel,      // kernel return code `argument`, an empty record
    result,      // the right answer, but with SMC result `argument`
    delay,       // the right answer, `argument` milliseconds late
};

struct AnswerFault {
    FaultKind kind = FaultKind::none;
    std::uint32_t argument = 0;
    std::uint64_t after = 0;             // so many matching requests are answered properly first
    std::optional<std::uint64_t> times;  // then so many are hit; absent = all
    std::optional<FourCC> key;           // only requests for this key
    std::optional<std::uint8_t> command; // only this SMCCommand
};

class AnswerFaults {
public:
    // Longest packet that a fault may send.
    static constexpr std::uint32_t longestReply = 4096;

    // Replaces the fault; counting starts anew.
    void set(const AnswerFault& fault);

    void clear() { set({}); }

    [[nodiscard]] const AnswerFault& current() const { return fault_; }

    // What to do with this request: the current fault or `none`. Counts the request.
    [[nodiscard]] AnswerFault decide(const SMCParam& request);

private:
    AnswerFault fault_;
    std::uint64_t matched_ = 0;
};

// One word for the state line, for example "delay:3000".
[[nodiscard]] std::string faultText(const AnswerFault& fault);

} // namespace simulated
