// How to answer when macOS asks the application to quit. Pure, so that it can be tested on other systems.
//
// A quit from a menu is declined ("not now") and then carried out by Qt's own event loop, which notifies
// everyone (aboutToQuit). At the end of the session a "not now" could stop the log-out, so the fans are
// handed back at once and the answer is "now".

#pragma once

#include <cstdint>
#include <span>

namespace Fenwhirl {

enum class QuitAnswer {
    endNow,           // hand the fans back, then agree
    leaveTheEventLoop // decline, and let the event loop end
};

// `reason` is the four-character code of the quit event's reason, 0 when it has none.
[[nodiscard]] QuitAnswer quitAnswer(std::uint32_t reason);

// The same for an event that may carry its reason in several places (as an attribute or a parameter, as a
// type or an enumeration). One of them is enough to indicate the end of a session.
[[nodiscard]] QuitAnswer quitAnswer(std::span<const std::uint32_t> reasons);

} // namespace Fenwhirl
