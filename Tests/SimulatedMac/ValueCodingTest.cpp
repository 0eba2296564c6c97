#include "SimulatedMac/ValueCoding.h"

#include "SimulatedMac/TextParsing.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace simulated {
namespace {

std::optional<double> decoded(FourCC type, const std::string& hex) {
    return decodeValue(type, *parseHexBytes(hex, 32));
}

std::string encoded(FourCC type, double value) {
    std::array<std::uint8_t, 8> bytes{};
    if (!encodeValue(type, value, bytes)) {
        return "none";
    }
    return hexText(std::span(bytes).first(valueSize(type)));
}

TEST(ValueCoding, DecodesEveryKindOfNumber) {
    EXPECT_EQ(decoded(fourCC("sp78"), "2F80"), 47.5);
    EXPECT_EQ(decoded(fourCC("sp78"), "FF00"), -1.0);
    EXPECT_EQ(decoded(fourCC("fpe2"), "1F43"), 2000.75);
    EXPECT_EQ(decoded(fourCC("flt "), "0000C842"), 100.0);
    EXPECT_EQ(decoded(fourCC("ui16"), "0102"), 258.0);
    EXPECT_EQ(decoded(fourCC("ui32"), "000002CF"), 719.0);
    EXPECT_EQ(decoded(fourCC("si8 "), "FF"), -1.0);
    EXPECT_EQ(decoded(fourCC("sp5a"), "0400"), 1.0);
    EXPECT_EQ(decoded(fourCC("flag"), "01"), 1.0);
}

TEST(ValueCoding, TooFewBytesAndOtherTypesHaveNoNumber) {
    EXPECT_FALSE(decoded(fourCC("ui32"), "000002"));
    EXPECT_FALSE(decoded(fourCC("ui8 "), ""));
    EXPECT_FALSE(decoded(fourCC("{fds"), "00000000"));
    EXPECT_FALSE(decoded(fourCC("spzz"), "0000"));
    EXPECT_FALSE(decoded(fourCC("sp79"), "0000")) << "together 16 bits, one too many for a signed type";
    EXPECT_EQ(encoded(fourCC("ch8*"), 1), "none");
}

TEST(ValueCoding, EncodesToTheNearestStep) {
    EXPECT_EQ(encoded(fourCC("sp78"), 47.5), "2F80");
    EXPECT_EQ(encoded(fourCC("sp78"), -1), "FF00");
    EXPECT_EQ(encoded(fourCC("fpe2"), 3000), "2EE0");
    EXPECT_EQ(encoded(fourCC("flt "), 100), "0000C842");
    EXPECT_EQ(encoded(fourCC("ui8 "), 1.6), "02");
    EXPECT_EQ(encoded(fourCC("ui32"), 719), "000002CF");
}

TEST(ValueCoding, CutsAtTheEndsOfTheRange) {
    EXPECT_EQ(encoded(fourCC("sp78"), 1000), "7FFF");
    EXPECT_EQ(encoded(fourCC("sp78"), -1000), "8000");
    EXPECT_EQ(encoded(fourCC("fpe2"), -5), "0000");
    EXPECT_EQ(encoded(fourCC("fpe2"), 1e9), "FFFF");
    EXPECT_EQ(encoded(fourCC("ui8 "), 300), "FF");
    EXPECT_EQ(encoded(fourCC("ui64"), 1e30), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(encoded(fourCC("sp78"), std::nan("")), "0000");
    EXPECT_EQ(encoded(fourCC("ui16"), std::numeric_limits<double>::infinity()), "FFFF");
}

TEST(ValueCoding, TooLittleRoomIsRefused) {
    std::array<std::uint8_t, 1> bytes{7};
    EXPECT_FALSE(encodeValue(fourCC("ui16"), 1, bytes));
    EXPECT_EQ(bytes[0], 7);
}

} // namespace
} // namespace simulated
