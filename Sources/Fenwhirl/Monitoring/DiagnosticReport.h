// The text that a user sends when something does not work: what the controller says, whether the helper is
// there, and, on request, what a real attempt to drive a fan gave.
//
// In French in every language, because it is read by the makers. Blocks while it reads the whole controller,
// about eight seconds more with the fan test: not on the main thread.

#pragma once

#include "Fenwhirl/Monitoring/MonitorServices.h"

#include <atomic>
#include <string>

// Opens a connection of its own. Once `stop` is true the enumeration ends early.
[[nodiscard]] std::string diagnosticReportText(const MonitorServices& services, bool withFanTest,
                                               const std::atomic<bool>& stop);
