// Human-readable names of temperature keys, in French, the program's source language, and the orders of
// preference among sensors.
//
// Names are labels, not identifiers: several keys may share one. Thread-safe: everything here is constant.

#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl::SensorNames {

// The name from a fixed table for the well-known keys ("TC0P" is "Processeur (proximité)"). For other keys, a
// name derived from the key's form ("TC1C" is "Cœur CPU 1", "Tp0D" is "Cœur performance 0D", "TZ9X" is
// "Capteur TZ9X"). Never fails.
[[nodiscard]] std::string friendly(std::string_view key);

// The keys of the fixed table, in its order. Tests check every name with them.
[[nodiscard]] std::vector<std::string_view> wellKnownKeys();

// The candidates for the processor temperature that the program shows first, most preferred first.
inline constexpr std::array<std::string_view, 12> primaryKeys = {
    "TCXC", "TC0P", "TC0E", "TC0F", "TC0D", "TC0H", "Tp01", "Tp05", "Tp09", "Tp0D", "Tp0T", "Tp0b",
};

// The sensors that are listed first.
inline constexpr std::array<std::string_view, 19> featuredKeys = {
    "TC0P", "TCXC", "TC1C", "TC2C", "TCGC", "TG0P", "TGDD", "TM0P", "TH0A", "TH0a",
    "TB0T", "Ts0P", "Th0H", "TaLP", "Tp01", "Tp09", "Te05", "Tg05", "Tg0f",
};

} // namespace Fenwhirl::SensorNames
