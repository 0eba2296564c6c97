#include "FenwhirlCore/SMC.h"
#include "Support/ScriptedSMC.h"

#include <cstring>
#include <gtest/gtest.h>
#include <numeric>

namespace Fenwhirl {

namespace {

using Bytes = std::vector<std::uint8_t>;

class SMCKeys : public testing::Test {
protected:
    ScriptedSMC controller;
    SMC smc = controller.open();
};

// The 80 bytes of a request as hexadecimal text, without its runs of zeros.
std::string hex(const SMCParam& request) {
    std::array<std::uint8_t, sizeof(SMCParam)> bytes{};
    std::memcpy(bytes.data(), &request, sizeof(request));
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != 0) {
            constexpr std::string_view digits = "0123456789abcdef";
            text += std::to_string(i) + ':' + digits[bytes[i] >> 4U] + digits[bytes[i] & 15U] + ' ';
        }
    }
    return text;
}

TEST(FourCC, FoldsTheFirstFourBytes) {
    EXPECT_EQ(SMC::fourCC("FNum"), 0x464E756DU);
    EXPECT_EQ(SMC::fourCC(""), 0U);
    EXPECT_EQ(SMC::fourCC("ab"), 0x6162U);
    EXPECT_EQ(SMC::fourCC("F10Ac"), SMC::fourCC("F10A"));
    EXPECT_EQ(SMC::fourCC(std::string(300, 'x')), 0x78787878U);
    EXPECT_EQ(SMC::fourCC("é"), 0xC3A9U);
    EXPECT_EQ(SMC::fourCC("ééé"), 0xC3A9C3A9U);
    EXPECT_EQ(SMC::fourCC(std::string_view("a\0b\0", 4)), 0x61006200U);
}

TEST(FourCC, ComesBackAsText) {
    EXPECT_EQ(SMC::string(0x464E756D), "FNum");
    EXPECT_EQ(SMC::string(0x666C7420), "flt ");
    EXPECT_EQ(SMC::string(0x66006C00), std::string("f\0l\0", 4));
    EXPECT_EQ(SMC::string(0), std::string(4, '\0'));
}

TEST(FourCC, IsNoTextWhenAByteIsNotASCII) {
    for (const std::uint32_t code : {0x80000000U, 0x46FF756DU, 0x464E806DU, 0x464E7580U, 0xFFFFFFFFU}) {
        EXPECT_EQ(SMC::string(code), "") << std::hex << code;
    }
    EXPECT_EQ(SMC::string(0x7F7F7F7F), "\x7F\x7F\x7F\x7F");
}

TEST_F(SMCKeys, RequestsHoldNothingButWhatTheCommandUses) {
    controller.set("TC0P", "sp78", {0x2F, 0x80});
    controller.set("F0Md", "ui8 ", {0});
    ASSERT_TRUE(smc.readValue("TC0P"));
    ASSERT_TRUE(smc.writeValue("F0Md", 1));
    ASSERT_EQ(smc.allKeys().size(), 2U);

    const auto& requests = controller.requests;
    ASSERT_EQ(requests.size(), 8U);
    EXPECT_EQ(hex(requests[0]), "0:50 1:30 2:43 3:54 42:09 ");
    EXPECT_EQ(hex(requests[1]), "0:50 1:30 2:43 3:54 28:02 42:05 ");
    EXPECT_EQ(hex(requests[2]), "0:64 1:4d 2:30 3:46 42:09 ");
    EXPECT_EQ(hex(requests[3]), "0:64 1:4d 2:30 3:46 28:01 42:06 48:01 ");
    EXPECT_EQ(hex(requests[6]), "42:08 ");
    EXPECT_EQ(hex(requests[7]), "42:08 44:01 ");
}

TEST_F(SMCKeys, AReadCostsTwoRoundTripsAndNothingIsRemembered) {
    controller.set("TC0P", "sp78", {0x2F, 0x80});
    EXPECT_EQ(smc.readValue("TC0P"), 47.5);
    EXPECT_EQ(controller.requests.size(), 2U);
    controller.set("TC0P", "ui8 ", {9});
    EXPECT_EQ(smc.readValue("TC0P"), 9);
    EXPECT_EQ(controller.requests.size(), 4U);
}

TEST_F(SMCKeys, AMissingKeyCannotBeReadOrWritten) {
    EXPECT_FALSE(smc.hasKey("TC0P"));
    EXPECT_FALSE(smc.info("TC0P"));
    EXPECT_FALSE(smc.readBytes("TC0P"));
    EXPECT_FALSE(smc.readValue("TC0P"));
    EXPECT_FALSE(smc.writeValue("TC0P", 1));
    EXPECT_TRUE(controller.writes.empty());
}

TEST_F(SMCKeys, AKeyIsThereEvenWhenItCannotBeRead) {
    controller.set("AC-D", "ui8 ", {1});
    controller.at("AC-D").readResult = SMCResult::notReadable;
    EXPECT_TRUE(smc.hasKey("AC-D"));
    EXPECT_FALSE(smc.readBytes("AC-D"));
}

TEST_F(SMCKeys, AtMostThirtyTwoBytesAreRead) {
    Bytes bytes(40);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    controller.set("LONG", "hex_", bytes);
    bytes.resize(32);
    EXPECT_EQ(smc.readBytes("LONG")->bytes, bytes);
    EXPECT_EQ(smc.readBytes("LONG")->type, "hex_");
    EXPECT_EQ(controller.requests.back().keyInfo.dataSize, 40U);
}

TEST_F(SMCKeys, AnyReportedSizeIsSafe) {
    controller.set("KEYS", "ui8 ", Bytes(32, 7));
    for (const std::uint32_t size : {0U, 1U, 3U, 31U, 32U, 33U, 40U, 255U, 0x80000000U, 0xFFFFFFFFU}) {
        controller.at("KEYS").reportedSize = size;
        EXPECT_EQ(smc.info("KEYS")->size, size);
        EXPECT_EQ(smc.readBytes("KEYS")->bytes.size(), std::min<std::size_t>(size, 32)) << size;
        EXPECT_EQ(controller.requests.back().keyInfo.dataSize, size);
        EXPECT_EQ(smc.readValue("KEYS").has_value(), size > 0) << size;
        EXPECT_TRUE(smc.writeValue("KEYS", 7));
        EXPECT_EQ(controller.requests.back().keyInfo.dataSize, size);
        EXPECT_EQ(controller.requests.back().bytes[0], 7);
        EXPECT_EQ(controller.requests.back().bytes[1], 0);
        controller.at("KEYS").bytes = Bytes(32, 7);
    }
}

TEST_F(SMCKeys, AtMostThirtyTwoBytesAreWritten) {
    controller.set("LONG", "hex_", Bytes(32));
    EXPECT_TRUE(smc.writeBytes("LONG", 40, Bytes(40, 0xAA)));
    EXPECT_EQ(controller.requests.back().keyInfo.dataSize, 40U);
    EXPECT_EQ(controller.writes.back().bytes, Bytes(32, 0xAA));
}

TEST_F(SMCKeys, ARefusedRequestHasNoValueWhateverItsPayload) {
    controller.set("TC0P", "sp78", {0x2F, 0x80});
    controller.hook = [](const SMCParam&) {
        SMCParam output{};
        output.result = SMCResult::keyNotFound;
        output.key = SMC::fourCC("TC0P");
        output.keyInfo = {.dataSize = 2, .dataType = SMC::fourCC("sp78"), .dataAttributes = 0, .padding = {}};
        output.bytes = {0x2F, 0x80};
        return ScriptedSMC::Reply(output);
    };
    EXPECT_FALSE(smc.info("TC0P"));
    EXPECT_FALSE(smc.readValue("TC0P"));
    EXPECT_FALSE(smc.writeBytes("TC0P", 2, Bytes{1, 2}));
    EXPECT_TRUE(smc.allKeys().empty());
}

TEST_F(SMCKeys, UnknownTypesAreReadAsBytesOnly) {
    for (const std::string& type :
         {std::string("flt\0", 4), std::string("\x80lt ", 4), std::string("{alc")}) {
        controller.set("KEYS", type, {1, 2, 3, 4});
        EXPECT_EQ(smc.readBytes("KEYS")->bytes, (Bytes{1, 2, 3, 4}));
        EXPECT_EQ(smc.readBytes("KEYS")->type, type[0] == '\x80' ? "" : type);
        EXPECT_FALSE(smc.readValue("KEYS"));
        EXPECT_FALSE(smc.writeValue("KEYS", 1));
    }
    EXPECT_TRUE(controller.writes.empty());
}

TEST_F(SMCKeys, WritingAnUnsupportedTypeReachesNothing) {
    controller.set("TC0P", "sp78", {0, 0});
    EXPECT_FALSE(smc.writeValue("TC0P", 50));
    EXPECT_EQ(controller.requests.size(), 1U);
}

TEST_F(SMCKeys, ARefusedWriteFails) {
    controller.set("F0Tg", "fpe2", {0, 0});
    controller.at("F0Tg").writeResult = SMCResult::notWritable;
    EXPECT_FALSE(smc.writeValue("F0Tg", 2000));
    EXPECT_EQ(controller.writes, (std::vector<ScriptedSMC::Write>{{"F0Tg", {0x1F, 0x40}, false}}));
}

TEST_F(SMCKeys, SizeAndTypeComeFromTheSameAnswer) {
    // Every key info differs from the previous one; a read must match the key info that preceded it.
    int round = 0;
    controller.hook = [&](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        SMCParam output{};
        if (request.data8 == SMCCommand::keyInfo) {
            ++round;
            output.keyInfo.dataSize = round % 2 == 0 ? 1 : 2;
            output.keyInfo.dataType = SMC::fourCC(round % 2 == 0 ? "ui8 " : "ui16");
        } else {
            EXPECT_EQ(request.keyInfo.dataSize, round % 2 == 0 ? 1U : 2U);
            output.bytes = {1, 2};
        }
        return output;
    };
    EXPECT_EQ(smc.readValue("KEYS"), 0x0102);
    EXPECT_EQ(smc.readValue("KEYS"), 1);
}

TEST_F(SMCKeys, EnumerationKeepsTheOrderAndSkipsFailingIndexes) {
    for (const char* key : {"FNum", "TC0P", "BATP", "TB0T"}) {
        controller.set(key, "ui8 ", {1});
    }
    controller.hook = [](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 == SMCCommand::keyByIndex && request.data32 == 1) {
            return ScriptedSMC::Reply();
        }
        return std::nullopt;
    };
    EXPECT_EQ(smc.allKeys(), (std::vector<std::string>{"FNum", "BATP", "TB0T"}));
}

TEST_F(SMCKeys, EnumerationKeepsDuplicatesAndKeysWithoutText) {
    controller.set("#KEY", "ui32", {0, 0, 0, 4});
    controller.hook = [](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        if (request.data8 != SMCCommand::keyByIndex) {
            return std::nullopt;
        }
        SMCParam output{};
        output.key = request.data32 == 1 ? 0xFF000000U : SMC::fourCC("TC0P");
        return output;
    };
    EXPECT_EQ(smc.allKeys(), (std::vector<std::string>{"TC0P", "", "TC0P", "TC0P"}));
}

TEST_F(SMCKeys, WithoutAKeyCountNoIndexIsAsked) {
    controller.set("TC0P", "sp78", {1, 1});
    controller.set("#KEY", "ui32", {});
    EXPECT_TRUE(smc.allKeys().empty());
    controller.at("#KEY").readResult = SMCResult::notReadable;
    EXPECT_TRUE(smc.allKeys().empty());
    for (const SMCParam& request : controller.requests) {
        EXPECT_NE(request.data8, SMCCommand::keyByIndex);
    }
}

TEST_F(SMCKeys, ANegativeKeyCountIsNone) {
    controller.setNumber("#KEY", "flt ", -3);
    EXPECT_TRUE(smc.allKeys().empty());
    EXPECT_EQ(controller.requests.size(), 2U);
}

TEST_F(SMCKeys, TheStopFlagEndsAnEnumeration) {
    std::atomic<bool> stop = false;
    controller.set("#KEY", "ui32", {0xFF, 0xFF, 0xFF, 0xFF});
    controller.set("TC0P", "sp78", {0x2F, 0x80});
    controller.hook = [&](const SMCParam& request) -> std::optional<ScriptedSMC::Reply> {
        stop = request.data8 == SMCCommand::keyByIndex && request.data32 == 10;
        return std::nullopt;
    };
    smc.setStopFlag(&stop);
    EXPECT_EQ(smc.allKeys().size(), 2U);
    EXPECT_EQ(controller.requests.back().data32, 10U);
    stop = false;
    EXPECT_EQ(smc.discoverTemperatureKeys(), std::vector<std::string>{"TC0P"});
    EXPECT_EQ(controller.requests.back().data32, 10U);
}

TEST_F(SMCKeys, ADeadConnectionEndsAnEnumeration) {
    controller.set("#KEY", "ui32", {0xFF, 0xFF, 0xFF, 0xFF});
    controller.diesAtRequest = 20;
    EXPECT_TRUE(smc.allKeys().size() <= 18);
    EXPECT_EQ(controller.requests.size(), 21U);
    EXPECT_TRUE(smc.discoverTemperatureKeys().empty());
}

using SMCKeysDeathTest = SMCKeys;

TEST_F(SMCKeysDeathTest, AKeyCountThatIsNoUsableNumberEndsTheProcess) {
    for (const Bytes& count : {Bytes{0, 0, 0xC0, 0x7F}, Bytes{0, 0, 0x80, 0x7F}, Bytes{0, 0, 0x80, 0xFF},
                               Bytes{0, 0, 0x00, 0x5F}, Bytes{0xFF, 0xFF, 0x7F, 0xFF}}) {
        controller.set("#KEY", "flt ", count);
        EXPECT_EXIT(static_cast<void>(smc.allKeys()), testing::KilledBySignal(SIGABRT), "");
        EXPECT_EXIT(static_cast<void>(smc.discoverTemperatureKeys()), testing::KilledBySignal(SIGABRT), "");
        EXPECT_EXIT(static_cast<void>(smc.diagnosticReport()), testing::KilledBySignal(SIGABRT), "");
    }
}

} // namespace

} // namespace Fenwhirl
