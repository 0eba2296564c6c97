// Enumerations that are stored as text: one table per enumeration, used in both directions.

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

// Rows of an enumerator and its text; every enumerator has exactly one row.
template <typename Case, std::size_t count>
using RawValueTable = std::array<std::pair<Case, std::string_view>, count>;

template <typename Case, std::size_t count>
[[nodiscard]] constexpr std::string_view rawValueIn(const RawValueTable<Case, count>& table, Case wanted) {
    for (const auto& [candidate, word] : table) {
        if (candidate == wanted) {
            return word;
        }
    }
    return {};
}

template <typename Case, std::size_t count>
[[nodiscard]] constexpr std::optional<Case> caseIn(const RawValueTable<Case, count>& table,
                                                   std::string_view wanted) {
    for (const auto& [candidate, word] : table) {
        if (word == wanted) {
            return candidate;
        }
    }
    return std::nullopt;
}

template <typename Case, std::size_t count>
[[nodiscard]] constexpr std::array<Case, count> casesOf(const RawValueTable<Case, count>& table) {
    std::array<Case, count> cases{};
    for (std::size_t i = 0; i < count; ++i) {
        cases[i] = table[i].first;
    }
    return cases;
}
