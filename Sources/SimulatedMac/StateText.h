// The state of a simulation as text: for programs, for people, and for the live line of a terminal.

#pragma once

#include "SimulatedMac/Commands.h"

#include <string>

namespace simulated {

// One line of name=value pairs without blanks in the values, such as
// "machine=MacBookPro11,4 time=12.300 speed=1 heat=host watts=14.2 …".
//   die, graphics    temperatures of the dies in degrees Celsius, from the thermal model, not from a sensor
//   granted          the share of the requested power that throttling allows, 1 = all
//   fanN             SPEED/TARGET/automatic or SPEED/TARGET/manual, in whole rpm
//   unlock           none (no such flag), locked, waiting or open
//   clients          connected now; connections, requests and writes are totals since the start
[[nodiscard]] std::string stateLine(const CommandContext& context, Instant now);

// Several lines, each ended by a line end: heat and fans, then the temperature keys that have changed most.
[[nodiscard]] std::string stateTable(const CommandContext& context);

// The live line: temperatures of the thermal model, fans, power, and the number of clients.
[[nodiscard]] std::string liveLine(const CommandContext& context);

} // namespace simulated
