// Fuzzes fan writes on random firmware with random refusals. A second implementation of the sequence predicts
// which writes are attempted, in which order, with which bytes, and what the operation returns.

#include "FuzzInput.h"
#include "ReplacedStop.h"
#include "Support/ScriptedSMC.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace Fenwhirl {

namespace {

using Bytes = ScriptedSMC::Bytes;
using Write = ScriptedSMC::Write;

constexpr int fans = 3;

std::string fan(int index, const char* suffix) {
    return "F" + std::to_string(index) + suffix;
}

void addKey(ScriptedSMC& controller, FuzzInput& input, const std::string& key) {
    constexpr const char* types[] = {"ui8 ", "ui16", "fpe2", "flt ", "sp78", "ui32"};
    const std::uint8_t choice = input.byte();
    if (choice % 8 >= 6) {
        return; // this firmware does not have the key
    }
    const auto value = input.bytes(choice % 8 == 3 || choice % 8 == 5 ? 4 : choice % 8 == 0 ? 1 : 2);
    controller.set(key, types[choice % 8], Bytes(value.begin(), value.end()));
    if (choice & 0x40) {
        controller.at(key).writeResult = SMCResult::notWritable;
    }
    if (choice & 0x80) {
        controller.at(key).readResult = SMCResult::notReadable;
    }
}

// The expected log, with its own table that the expected writes change.
class Model {
public:
    explicit Model(const ScriptedSMC& controller) {
        for (const std::string key : {"FNum", "FS! ", "Ftst"}) {
            take(controller, key);
        }
        for (int i = 0; i < fans; ++i) {
            for (const char* suffix : {"Mn", "Mx", "Tg", "Md", "md"}) {
                take(controller, fan(i, suffix));
            }
        }
    }

    bool set(int index, double rpm) {
        const double low = read(fan(index, "Mn")).value_or(0);
        const double high = read(fan(index, "Mx")).value_or(10000);
        const double raised = rpm <= low ? low : rpm;
        const double target = high < raised ? high : raised;
        if (!std::isfinite(static_cast<float>(target))) {
            return false;
        }
        if (const auto mask = read("FS! ")) {
            write("FS! ", static_cast<int>(*mask) | 1 << index);
        }
        const bool hasUnlock = keys.contains("Ftst");
        if (hasUnlock) {
            write("Ftst", 1);
        }
        const std::string mode = keys.contains(fan(index, "Md")) ? fan(index, "Md") : fan(index, "md");
        bool isManual = true;
        if (keys.contains(mode)) {
            isManual = write(mode, 1);
            for (int again = 0; hasUnlock && !isManual && again < 20; ++again) {
                isManual = write(mode, 1);
            }
        }
        const bool isSteered = write(fan(index, "Tg"), target);
        return isSteered && (isManual || !hasUnlock);
    }

    bool reset(int index) {
        bool good = true;
        if (const auto mask = read("FS! ")) {
            good = write("FS! ", static_cast<int>(*mask) & ~(1 << index));
        }
        for (const char* suffix : {"Md", "md"}) {
            if (keys.contains(fan(index, suffix))) {
                good = write(fan(index, suffix), 0) && good;
            }
        }
        if (!keys.contains("Ftst")) {
            return good;
        }
        for (int i = 0; i < std::trunc(read("FNum").value_or(0)); ++i) {
            const std::string mode = keys.contains(fan(i, "Md")) ? fan(i, "Md") : fan(i, "md");
            const auto value = read(mode);
            if (value && (*value > 0 || *value < 0)) {
                return good;
            }
        }
        write("Ftst", 0);
        return good;
    }

    std::vector<Write> log;

private:
    void take(const ScriptedSMC& controller, const std::string& key) {
        if (controller.has(key)) {
            keys[key] = const_cast<ScriptedSMC&>(controller).at(key);
        }
    }

    std::optional<double> read(const std::string& key) {
        const auto entry = keys.find(key);
        if (entry == keys.end() || entry->second.readResult != 0) {
            return std::nullopt;
        }
        ScriptedSMC one;
        one.set(key, entry->second.type, entry->second.bytes);
        const bool isComplete = one.open().readValue(key).has_value();
        return isComplete ? std::optional(one.number(key)) : std::nullopt;
    }

    bool write(const std::string& key, double value) {
        const auto entry = keys.find(key);
        if (entry == keys.end()) {
            return false;
        }
        const std::string& type = entry->second.type;
        Bytes bytes;
        if (type == "flt ") {
            const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
            for (int shift = 0; shift < 32; shift += 8) {
                bytes.push_back(static_cast<std::uint8_t>(bits >> shift));
            }
        } else if (type == "ui8 ") {
            bytes = {static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0))};
        } else if (type == "ui16" || type == "fpe2") {
            const double highest = type == "fpe2" ? 16000 : 65535;
            const auto whole =
                static_cast<unsigned>(std::clamp(value, 0.0, highest)) * (type == "fpe2" ? 4 : 1);
            bytes = {static_cast<std::uint8_t>(whole / 256), static_cast<std::uint8_t>(whole % 256)};
        } else {
            return false;
        }
        bytes.resize(entry->second.bytes.size()); // as many bytes as the reported size
        const bool accepted = entry->second.writeResult == 0;
        if (accepted) {
            entry->second.bytes = bytes;
        }
        log.push_back({key, bytes, accepted});
        return accepted;
    }

    std::map<std::string, ScriptedSMC::Key> keys;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    ScriptedSMC controller;
    for (const std::string key : {"FS! ", "Ftst"}) {
        addKey(controller, input, key);
    }
    controller.setNumber("FNum", "ui8 ", input.byte() % (fans + 1));
    for (int i = 0; i < fans; ++i) {
        for (const char* suffix : {"Mn", "Mx", "Tg", "Md", "md"}) {
            addKey(controller, input, fan(i, suffix));
        }
    }
    SMC smc = controller.open();
    for (int step = 0; step < 4; ++step) {
        const std::uint8_t operation = input.byte();
        const int index = operation / 2 % fans;
        const auto rpm = operation & 0x80 ? std::bit_cast<double>(input.integer<std::uint64_t>())
                                          : static_cast<double>(input.integer<std::uint16_t>());
        Model model(controller);
        controller.writes.clear();
        bool result = false;
        const bool stopped =
            stops([&] { result = operation % 2 == 0 ? smc.setFanSpeed(index, rpm) : smc.resetFan(index); });
        const double mask = controller.number("FS! ");
        if (stopped) {
            fuzzExpect(controller.writes.empty(), "a stop comes before any write");
            fuzzExpect(!(mask > -1 && mask < 65536), "only an unusable mask stops");
            return 0;
        }
        const bool expected = operation % 2 == 0 ? model.set(index, rpm) : model.reset(index);
        fuzzExpect(controller.writes == model.log, "the writes are those of the description");
        fuzzExpect(result == expected, "the result is that of the description");
    }
    return 0;
}

} // namespace Fenwhirl
