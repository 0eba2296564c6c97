// The state of a simulation as text: for programs, for people, and for the line that a terminal shows.

#pragma once

#include "SimulatedMac/Commands.h"

#include <string>

namespace simulated {

// "machine=MacBookPro11,4 time=12.300 speed=1 heat=host watts=14.2 …": pairs without blanks in the values.
//   die, graphics    temperatures of the chips in degrees Celsius (the physics', no sensor's)
//   granted          the share of the power that throttling lets through, 1 = all
//   fanN             SPEED/TARGET/automatic or SPEED/TARGET/manual, whole rpm
//   unlock           none (no such flag), locked, waiting or open
//   clients          connected now; connections, requests and writes count from the start
[[nodiscard]] std::string stateLine(const CommandContext& context, Instant now);

// Several lines, each ended by a line end: what moves, then the temperature keys that moved most.
[[nodiscard]] std::string stateTable(const CommandContext& context);

// The line for the live display: temperatures of the physics, fans, power, and how many programs look on.
[[nodiscard]] std::string liveLine(const CommandContext& context);

} // namespace simulated
