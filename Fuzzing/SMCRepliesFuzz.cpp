// Fuzzes every operation with a controller that gives arbitrary answers. Nothing may crash, results must keep
// their promises, and the process may be stopped only where a count, a mask or an index is unusable.

#include "FenwhirlCore/Platform/SystemText.h"
#include "FenwhirlCore/SMC.h"
#include "FenwhirlCore/SMCValue.h"
#include "FuzzInput.h"
#include "ReplacedStop.h"

#include <algorithm>
#include <cstring>
#include <set>

namespace Fenwhirl {

namespace {

// Takes its answers from the input. Once that is used up it behaves as if dead, which bounds every loop.
class HostileTransport final : public SMCTransport {
public:
    HostileTransport(FuzzInput& input, std::int64_t fanIndex) : input_(input), fanIndex_(fanIndex) {}

    std::optional<SMCParam> call(const SMCParam& request) override {
        checkRequest(request);
        if (isDead()) {
            return std::nullopt;
        }
        sawWrite_ = sawWrite_ || request.data8 == SMCCommand::writeKey;
        const std::uint8_t control = input_.byte();
        if (control % 16 == 0) {
            return std::nullopt;
        }
        SMCParam output{};
        output.result = control % 16 == 1 ? input_.byte() : 0;
        if (request.data8 == SMCCommand::keyInfo) {
            output.keyInfo.dataSize = control % 4 == 0 ? input_.integer<std::uint32_t>() : 4;
            constexpr const char* types[] = {"flt ", "sp78", "fpe2", "ui8 ", "ui16", "ui32"};
            const std::uint8_t type = input_.byte();
            output.keyInfo.dataType =
                type % 8 < 6 ? SMC::fourCC(types[type % 8]) : input_.integer<std::uint32_t>();
            lastInfo_ = output.keyInfo;
        } else if (request.data8 == SMCCommand::keyByIndex) {
            const std::uint8_t kind = input_.byte();
            output.key = kind % 4 == 0
                             ? input_.integer<std::uint32_t>()
                             : SMC::fourCC(std::string(kind % 2 == 0 ? "TC0" : "F0A") + char(kind % 128));
        } else {
            std::ranges::copy(input_.bytes(control % 3 == 0 ? 32 : 4), output.bytes.begin());
            if (request.data8 == SMCCommand::readKey && output.result == 0) {
                noteValue(request.key, output);
            }
        }
        return output;
    }

    bool isDead() const override { return input_.isEmpty(); }

    void wait(std::chrono::milliseconds) override {}

    [[nodiscard]] bool sawReasonToStop() const { return sawReasonToStop_; }

    [[nodiscard]] bool sawWrite() const { return sawWrite_; }

private:
    void noteValue(std::uint32_t key, const SMCParam& output) {
        const auto size = std::min<std::size_t>(lastInfo_.dataSize, 32);
        const auto value =
            SMCValue::decode(SMC::string(lastInfo_.dataType), std::span(output.bytes).first(size));
        if (!value) {
            return;
        }
        const bool isCount = key == SMC::fourCC("FNum") || key == SMC::fourCC("#KEY");
        if (isCount && !(*value >= -0x1p63 && *value < 0x1p63)) {
            sawReasonToStop_ = true;
        }
        const bool isIndexUsable = fanIndex_ >= 0 && fanIndex_ <= 65535;
        if (key == SMC::fourCC("FS! ") && (!isIndexUsable || !(*value > -1 && *value < 65536))) {
            sawReasonToStop_ = true;
        }
    }

    static void checkRequest(const SMCParam& request) {
        SMCParam expected{};
        expected.data8 = request.data8;
        if (request.data8 == SMCCommand::keyByIndex) {
            expected.data32 = request.data32;
        } else {
            expected.key = request.key;
            if (request.data8 != SMCCommand::keyInfo) {
                expected.keyInfo.dataSize = request.keyInfo.dataSize;
            }
            if (request.data8 == SMCCommand::writeKey) {
                expected.bytes = request.bytes;
            }
        }
        fuzzExpect(std::memcmp(&request, &expected, sizeof(expected)) == 0,
                   "unused fields of a request are zero");
    }

    FuzzInput& input_;
    std::int64_t fanIndex_;
    SMCKeyInfo lastInfo_{};
    bool sawReasonToStop_ = false;
    bool sawWrite_ = false;
};

class NoText final : public SystemText {
public:
    bool value(std::string_view, char*, std::size_t&) const override { return false; }

    bool isTranslated() const override { return false; }

    std::string version() const override { return {}; }
};

void checkDiscovery(SMC& smc) {
    const auto keys = smc.discoverTemperatureKeys();
    fuzzExpect(std::set(keys.begin(), keys.end()).size() == keys.size(), "no sensor is discovered twice");
    for (const auto& key : keys) {
        fuzzExpect(key.size() == 4 && key.starts_with('T'), "sensors begin with T");
    }
    for (const auto& reading : smc.readTemperatures(keys)) {
        fuzzExpect(reading.celsius > 0 && reading.celsius < 130, "readings are plausible");
    }
}

void checkFans(SMC& smc) {
    int last = -1;
    for (const FanReading& fan : smc.readFans()) {
        fuzzExpect(fan.index > last, "fans are in order");
        last = fan.index;
    }
}

void operate(SMC& smc, std::uint8_t operation, std::int64_t index, double rpm) {
    switch (operation % 10) {
    case 0:
        return checkDiscovery(smc);
    case 1:
        return checkFans(smc);
    case 2:
        return static_cast<void>(smc.setFanSpeed(index, rpm));
    case 3:
        return static_cast<void>(smc.resetFan(index));
    case 4:
        return static_cast<void>(smc.resetFans());
    case 5:
        return static_cast<void>(smc.diagnosticReport(NoText()));
    case 6:
        fuzzExpect(!smc.fanWriteTest(0).empty(), "the test says something");
        return;
    case 7:
        return static_cast<void>(smc.allKeys());
    case 8:
        return static_cast<void>(smc.writeValue("F0Tg", 2000));
    default:
        const auto raw = smc.readBytes("TC0P");
        fuzzExpect(!raw || raw->bytes.size() <= 32, "a value has at most 32 bytes");
        fuzzExpect(smc.describe("TC0P").starts_with("TC0P"), "a line is about its key");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const std::uint8_t operation = input.byte();
    const std::uint8_t kind = input.byte();
    const std::int64_t index = kind % 4 == 0 ? input.integer<std::int64_t>() : kind % 4 - 1;
    const double rpm = std::bit_cast<double>(input.integer<std::uint64_t>());

    constexpr std::uint8_t writeTest = 6;
    auto transport = std::make_unique<HostileTransport>(input, operation % 10 < 4 ? index : 0);
    const HostileTransport& watched = *transport;
    SMC smc(std::move(transport));
    const bool stopped = stops([&] { operate(smc, operation, index, rpm); });
    fuzzExpect(!stopped || watched.sawReasonToStop(), "the process stops for a reason only");
    fuzzExpect(!stopped || operation % 10 != writeTest || !watched.sawWrite(),
               "the write test never stops between its writes and the hand-back");
    return 0;
}

} // namespace Fenwhirl
