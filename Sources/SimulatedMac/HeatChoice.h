// Choosing a heat source in words, as the command line and the heat command do.

#pragma once

#include "SimulatedMac/HeatSource.h"
#include "SimulatedMac/Mac.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simulated {

// "host", "LOAD%" (of the processor, what the machine needs at that load), "WATTS", "WATTS GRAPHICS-WATTS" or
// "course FILE". Null when the words name no source or the file holds no course; `error` says why.
[[nodiscard]] std::unique_ptr<HeatSource> makeHeatSource(std::span<const std::string_view> words,
                                                         const Mac& mac, std::string& error);

// The text of a file of at most 16 MiB; absent when it cannot be read or is larger.
[[nodiscard]] std::optional<std::string> readTextFile(const std::string& path);

} // namespace simulated
