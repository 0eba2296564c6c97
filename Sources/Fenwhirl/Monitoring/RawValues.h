// Enumerations that are stored as text: one table per enumeration, used in both directions.

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

namespace Fenwhirl {

// Rows of an enumerator and its text; every enumerator has exactly one row.
template <typename Case, std::size_t Count>
using RawValueTable = std::array<std::pair<Case, std::string_view>, Count>;

template <typename Case, std::size_t Count>
[[nodiscard]] constexpr std::string_view rawValueIn(const RawValueTable<Case, Count>& table, Case wanted) {
    for (const auto& [candidate, word] : table) {
        if (candidate == wanted) {
            return word;
        }
    }
    return {};
}

template <typename Case, std::size_t Count>
[[nodiscard]] constexpr std::optional<Case> caseIn(const RawValueTable<Case, Count>& table,
                                                   std::string_view wanted) {
    for (const auto& [candidate, word] : table) {
        if (word == wanted) {
            return candidate;
        }
    }
    return std::nullopt;
}

template <typename Case, std::size_t Count>
[[nodiscard]] constexpr std::array<Case, Count> casesOf(const RawValueTable<Case, Count>& table) {
    std::array<Case, Count> cases{};
    for (std::size_t i = 0; i < Count; ++i) {
        cases[i] = table[i].first;
    }
    return cases;
}

} // namespace Fenwhirl
