#include "Fenwhirl/Platform/Desktop/QuitAnswer.h"

#include <array>
#include <gtest/gtest.h>
#include <string_view>

namespace Fenwhirl {

namespace {

// The four-character code made of these letters.
constexpr std::uint32_t code(std::string_view letters) {
    std::uint32_t value = 0;
    for (const char letter : letters) {
        value = value << 8U | static_cast<unsigned char>(letter);
    }
    return value;
}

TEST(QuitAnswer, AnEndOfTheSessionIsAgreedToAtOnce) {
    for (const char* reason : {"shut", "rest", "rlgo"}) {
        EXPECT_EQ(quitAnswer(code(reason)), QuitAnswer::endNow) << reason;
    }
}

TEST(QuitAnswer, AQuitByTheUserGoesThroughTheEventLoop) {
    EXPECT_EQ(quitAnswer(0), QuitAnswer::leaveTheEventLoop);
}

TEST(QuitAnswer, OneReasonOfManyIsEnough) {
    const std::array<std::uint32_t, 4> last = {0, 0, code("xxxx"), code("rlgo")};
    EXPECT_EQ(quitAnswer(last), QuitAnswer::endNow);
    const std::array<std::uint32_t, 4> none = {0, code("xxxx"), 0, 0};
    EXPECT_EQ(quitAnswer(none), QuitAnswer::leaveTheEventLoop);
}

// The question that precedes it ("really log out?"), and any reason that a later system may give.
TEST(QuitAnswer, AnyOtherReasonIsAnOrdinaryQuit) {
    for (const char* reason : {"logo", "rsdn", "rrst", "quia", "xxxx", "SHUT"}) {
        EXPECT_EQ(quitAnswer(code(reason)), QuitAnswer::leaveTheEventLoop) << reason;
    }
    EXPECT_EQ(quitAnswer(0xFFFFFFFF), QuitAnswer::leaveTheEventLoop);
}

} // namespace

} // namespace Fenwhirl
