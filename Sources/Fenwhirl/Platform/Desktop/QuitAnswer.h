// What to answer when macOS asks the application to end. Pure, so that it is tested where there is no Mac.
//
// A quit from a menu is answered with "not now" and then done by Qt's own event loop, which says so to
// everyone (aboutToQuit). At the end of the session a "not now" could stop the log-out, so the fans are
// handed back at once and the answer is "now".

#pragma once

#include <cstdint>

enum class QuitAnswer {
    endNow,           // hand the fans back, then agree
    leaveTheEventLoop // decline, and let the event loop end
};

// `reason` is the four-character code of the quit event's reason, 0 when it has none. As attribute and as
// parameter of the event, whichever is there.
[[nodiscard]] QuitAnswer quitAnswer(std::uint32_t reason);
