// What to answer when macOS asks the application to end. Pure, so that it is tested where there is no Mac.
//
// A quit from a menu is answered with "not now" and then done by Qt's own event loop, which says so to
// everyone (aboutToQuit). At the end of the session a "not now" could stop the log-out, so the fans are
// handed back at once and the answer is "now".

#pragma once

#include <cstdint>
#include <span>

enum class QuitAnswer {
    endNow,           // hand the fans back, then agree
    leaveTheEventLoop // decline, and let the event loop end
};

// `reason` is the four-character code of the quit event's reason, 0 when it has none.
[[nodiscard]] QuitAnswer quitAnswer(std::uint32_t reason);

// The same for all the places where an event may carry its reason (as attribute or as parameter, as a type or
// as an enumeration): one of them is enough for the end of a session.
[[nodiscard]] QuitAnswer quitAnswer(std::span<const std::uint32_t> reasons);
