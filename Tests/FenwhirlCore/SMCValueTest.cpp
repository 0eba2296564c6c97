#include "FenwhirlCore/SMCValue.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace Fenwhirl {

namespace {

using Bytes = std::vector<std::uint8_t>;
using SMCValue::decode;
using SMCValue::encode;

constexpr double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::nan("");

TEST(SMCValueDecode, SignedFixedPointHasEightFractionBits) {
    EXPECT_EQ(decode("sp78", Bytes{0x2F, 0x80}), 47.5);
    EXPECT_EQ(decode("sp78", Bytes{0xFF, 0x00}), -1.0);
    EXPECT_EQ(decode("sp78", Bytes{0x80, 0x00}), -128.0);
    EXPECT_EQ(decode("sp78", Bytes{0x7F, 0xFF}), 128.0 - 1.0 / 256);
}

TEST(SMCValueDecode, FanSpeedsLoseTheirQuarters) {
    EXPECT_EQ(decode("fpe2", Bytes{0x1F, 0x40}), 2000);
    EXPECT_EQ(decode("fpe2", Bytes{0x1F, 0x43}), 2000);
    EXPECT_EQ(decode("fpe2", Bytes{0xFF, 0xFF}), 16383);
}

TEST(SMCValueDecode, IntegersAreUnsignedAndBigEndian) {
    EXPECT_EQ(decode("ui8 ", Bytes{0xFE}), 254);
    EXPECT_EQ(decode("ui16", Bytes{0xFE, 0x01}), 0xFE01);
    EXPECT_EQ(decode("ui32", Bytes{0xFE, 0x01, 0x02, 0x03}), 4261478915.0);
}

TEST(SMCValueDecode, FloatsAreLittleEndian) {
    EXPECT_EQ(decode("flt ", Bytes{0x00, 0x00, 0xC8, 0x42}), 100.0);
    EXPECT_EQ(decode("flt ", Bytes{0xDB, 0xE0, 0x28, 0x45}), 2702.053466796875);
}

TEST(SMCValueDecode, FloatsCarryWhatIsNoNumber) {
    EXPECT_EQ(decode("flt ", Bytes{0x00, 0x00, 0x80, 0x7F}), infinity);
    EXPECT_EQ(decode("flt ", Bytes{0x00, 0x00, 0x80, 0xFF}), -infinity);
    EXPECT_TRUE(std::isnan(decode("flt ", Bytes{0x00, 0x00, 0xC0, 0x7F}).value()));
}

TEST(SMCValueDecode, FurtherBytesAreIgnored) {
    EXPECT_EQ(decode("ui8 ", Bytes{7, 8, 9}), 7);
    EXPECT_EQ(decode("ui16", Bytes(32, 1)), 0x0101);
    EXPECT_EQ(decode("flt ", Bytes{0x00, 0x00, 0xC8, 0x42, 0xFF}), 100.0);
}

TEST(SMCValueDecode, TooFewBytesGiveNothing) {
    const std::pair<const char*, std::size_t> needs[] = {{"flt ", 4}, {"sp78", 2}, {"fpe2", 2},
                                                         {"ui8 ", 1}, {"ui16", 2}, {"ui32", 4}};
    for (const auto& [type, needed] : needs) {
        for (std::size_t count = 0; count < needed; ++count) {
            EXPECT_EQ(decode(type, Bytes(count, 1)), std::nullopt) << type << ' ' << count;
        }
        EXPECT_TRUE(decode(type, Bytes(needed, 1))) << type;
    }
}

TEST(SMCValueDecode, TypesAreComparedWithTheirBlanks) {
    using namespace std::string_view_literals;
    for (const auto type :
         {"flt"sv, "ui8"sv, "ui8\0"sv, ""sv, "FLT "sv, "sp79"sv, "flt  "sv, "hex_"sv, "flag"sv}) {
        EXPECT_EQ(decode(type, Bytes(32, 1)), std::nullopt) << type;
    }
}

TEST(SMCValueEncode, FanSpeedsAreTruncatedAndShifted) {
    EXPECT_EQ(encode("fpe2", 1200.7), (Bytes{0x12, 0xC0}));
    EXPECT_EQ(encode("fpe2", 16000), (Bytes{0xFA, 0x00}));
    EXPECT_EQ(encode("fpe2", 20000), (Bytes{0xFA, 0x00}));
    EXPECT_EQ(encode("fpe2", 1e300), (Bytes{0xFA, 0x00}));
    EXPECT_EQ(encode("fpe2", -5), (Bytes{0x00, 0x00}));
    EXPECT_EQ(encode("fpe2", 0.9), (Bytes{0x00, 0x00}));
}

TEST(SMCValueEncode, IntegersAreBroughtIntoTheirRange) {
    EXPECT_EQ(encode("ui8 ", 1.0), (Bytes{0x01}));
    EXPECT_EQ(encode("ui8 ", 300), (Bytes{0xFF}));
    EXPECT_EQ(encode("ui8 ", 255.9), (Bytes{0xFF}));
    EXPECT_EQ(encode("ui8 ", -0.5), (Bytes{0x00}));
    EXPECT_EQ(encode("ui16", 258.9), (Bytes{0x01, 0x02}));
    EXPECT_EQ(encode("ui16", 1e6), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(encode("ui16", -1e6), (Bytes{0x00, 0x00}));
}

TEST(SMCValueEncode, FloatsAreRoundedToSinglePrecisionLittleEndian) {
    EXPECT_EQ(encode("flt ", 100), (Bytes{0x00, 0x00, 0xC8, 0x42}));
    EXPECT_EQ(encode("flt ", 0.1), (Bytes{0xCD, 0xCC, 0xCC, 0x3D}));
    EXPECT_EQ(encode("flt ", -5), (Bytes{0x00, 0x00, 0xA0, 0xC0}));
}

TEST(SMCValueEncode, OtherTypesCannotBeWritten) {
    for (const char* type : {"sp78", "ui32", "flt", "ui8", "", "flag"}) {
        EXPECT_EQ(encode(type, 1), std::nullopt) << type;
        EXPECT_EQ(encode(type, notANumber), std::nullopt) << type;
    }
}

TEST(SMCValueEncode, EveryWritableValueComesBack) {
    for (int value = 0; value <= 16000; ++value) {
        EXPECT_EQ(decode("fpe2", encode("fpe2", value).value()), value);
        EXPECT_EQ(decode("ui16", encode("ui16", value).value()), value);
        EXPECT_EQ(decode("flt ", encode("flt ", value).value()), value);
        EXPECT_EQ(decode("ui8 ", encode("ui8 ", value % 256).value()), value % 256);
    }
}

TEST(SMCValueEncodeDeathTest, ANonFiniteValueEndsTheProcess) {
    for (const char* type : {"flt ", "fpe2", "ui8 ", "ui16"}) {
        for (const double value : {notANumber, infinity, -infinity}) {
            EXPECT_EXIT(static_cast<void>(encode(type, value)), testing::KilledBySignal(SIGABRT), "") << type;
        }
    }
}

} // namespace

} // namespace Fenwhirl
