#include "Fenwhirl/Platform/Desktop/QuitAnswer.h"

#include <algorithm>

namespace Fenwhirl {

namespace {

// Apple's codes for why the system asks to quit at the end of a session: 'shut', 'rest' and 'rlgo'.
constexpr std::uint32_t shutDown = 0x73687574;
constexpr std::uint32_t restart = 0x72657374;
constexpr std::uint32_t reallyLogOut = 0x726C676F;

} // namespace

QuitAnswer quitAnswer(std::uint32_t reason) {
    switch (reason) {
    case shutDown:
    case restart:
    case reallyLogOut:
        return QuitAnswer::endNow;
    default:
        return QuitAnswer::leaveTheEventLoop;
    }
}

QuitAnswer quitAnswer(std::span<const std::uint32_t> reasons) {
    const bool sessionEnds = std::ranges::any_of(
        reasons, [](std::uint32_t reason) { return quitAnswer(reason) == QuitAnswer::endNow; });
    return sessionEnds ? QuitAnswer::endNow : QuitAnswer::leaveTheEventLoop;
}

} // namespace Fenwhirl
