// The bytes of one fuzzer input, read as numbers from front to back. Once they are used up, it returns zeros.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

namespace Fenwhirl {

class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    [[nodiscard]] bool isEmpty() const { return rest_.empty(); }

    [[nodiscard]] std::uint8_t byte() {
        if (rest_.empty()) {
            return 0;
        }
        const std::uint8_t first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }

    template <typename Integer>
    [[nodiscard]] Integer integer() {
        Integer number = 0;
        for (std::size_t i = 0; i < sizeof(Integer); ++i) {
            number = static_cast<Integer>(number << 8U | byte());
        }
        return number;
    }

    [[nodiscard]] std::span<const std::uint8_t> bytes(std::size_t count) {
        const auto taken = rest_.first(count < rest_.size() ? count : rest_.size());
        rest_ = rest_.subspan(taken.size());
        return taken;
    }

private:
    std::span<const std::uint8_t> rest_;
};

// Checks a claim that a fuzz target makes about every input. A false claim ends the process, which the fuzzer
// reports as a finding.
inline void fuzzExpect(bool claim, const char* words) {
    if (claim) {
        return;
    }
    std::fprintf(stderr, "not true: %s\n", words);
    std::abort();
}

} // namespace Fenwhirl
