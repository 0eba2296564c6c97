// The text that a user sends when something does not work: what the controller reports, whether the helper is
// installed and, on request, the result of a real attempt to drive a fan.
//
// French in every language, because the developers read it. Blocks while it reads the whole controller, and
// for about eight seconds more with the fan test; not for the main thread.

#pragma once

#include "Fenwhirl/Monitoring/MonitorServices.h"

#include <atomic>
#include <string>

namespace Fenwhirl {

// Opens a connection of its own. The enumeration ends early once `stop` is true.
[[nodiscard]] std::string diagnosticReportText(const MonitorServices& services, bool withFanTest,
                                               const std::atomic<bool>& stop);

} // namespace Fenwhirl
