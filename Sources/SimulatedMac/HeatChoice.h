// Parses the description of a heat source, as given on the command line and to the heat command.

#pragma once

#include "SimulatedMac/HeatSource.h"
#include "SimulatedMac/Mac.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simulated {

// Accepts "host", "LOAD%" (the power that the machine needs at that processor load), "WATTS", "WATTS
// GRAPHICS-WATTS" and "course FILE". Null when the words name no source or the file contains no course;
// `error` says why.
[[nodiscard]] std::unique_ptr<HeatSource> makeHeatSource(std::span<const std::string_view> words,
                                                         const Mac& mac, std::string& error);

// The contents of a file of at most 16 MiB; absent when it is larger or cannot be read.
[[nodiscard]] std::optional<std::string> readTextFile(const std::string& path);

} // namespace simulated
