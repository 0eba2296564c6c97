#include "Support/ScriptedSMC.h"

#include "FenwhirlCore/SMCValue.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <span>
#include <sstream>
#include <utility>

namespace Fenwhirl {

namespace {

std::string codeText(std::uint32_t code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += static_cast<char>(static_cast<std::uint8_t>(code >> static_cast<unsigned>(shift)));
    }
    return text;
}

ScriptedSMC::Bytes bigEndian(std::uint32_t number, std::size_t count) {
    ScriptedSMC::Bytes bytes(count);
    for (std::size_t i = count; i-- > 0; number >>= 8U) {
        bytes[i] = static_cast<std::uint8_t>(number);
    }
    return bytes;
}

ScriptedSMC::Bytes bytesOf(std::string_view type, double number) {
    // Floating-point values are little-endian; all other types are big-endian.
    if (type == "flt ") {
        auto bytes = bigEndian(std::bit_cast<std::uint32_t>(static_cast<float>(number)), 4);
        std::ranges::reverse(bytes);
        return bytes;
    }
    if (type == "sp78") {
        return bigEndian(static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(number * 256))), 2);
    }
    const auto whole = static_cast<std::uint32_t>(number);
    if (type == "fpe2") {
        return bigEndian(whole << 2U, 2);
    }
    return bigEndian(whole, type == "ui8 " ? 1 : type == "ui16" ? 2 : 4);
}

bool isModeKey(const std::string& key) {
    return key.starts_with('F') && (key.ends_with("Md") || key.ends_with("md"));
}

ScriptedSMC::Bytes fromHex(const std::string& text) {
    ScriptedSMC::Bytes bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

} // namespace

class ScriptedSMC::Connection final : public SMCTransport {
public:
    explicit Connection(ScriptedSMC& controller) : controller_(controller) {}

    std::optional<SMCParam> call(const SMCParam& input) override { return controller_.answer(input); }

    bool isDead() const override { return controller_.isDead(); }

    void wait(std::chrono::milliseconds duration) override { controller_.waited += duration; }

private:
    ScriptedSMC& controller_;
};

std::unique_ptr<SMCTransport> ScriptedSMC::connect() {
    return std::make_unique<Connection>(*this);
}

void ScriptedSMC::set(std::string_view key, std::string_view type, Bytes bytes) {
    if (!has(key)) {
        order_.emplace_back(key);
    }
    keys_.insert_or_assign(std::string(key), Key{.type = std::string(type), .bytes = std::move(bytes)});
}

void ScriptedSMC::setNumber(std::string_view key, std::string_view type, double number) {
    set(key, type, bytesOf(type, number));
}

void ScriptedSMC::remove(std::string_view key) {
    keys_.erase(std::string(key));
    std::erase(order_, key);
}

ScriptedSMC::Key& ScriptedSMC::at(std::string_view key) {
    return keys_.find(key)->second;
}

bool ScriptedSMC::has(std::string_view key) const {
    return keys_.contains(key);
}

double ScriptedSMC::number(std::string_view key) const {
    const auto entry = keys_.find(key);
    const auto value =
        entry == keys_.end() ? std::nullopt : SMCValue::decode(entry->second.type, entry->second.bytes);
    return value.value_or(std::numeric_limits<double>::quiet_NaN());
}

bool ScriptedSMC::loadTable(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line)) {
        return false;
    }
    keys_.clear();
    order_.clear();
    // Sources/SimulatedMac/Machines/README.md describes the columns.
    while (std::getline(file, line)) {
        std::vector<std::string> fields;
        std::istringstream stream(line);
        for (std::string field; std::getline(stream, field, ',');) {
            fields.push_back(field);
        }
        fields.resize(7);
        const auto key = codeText(static_cast<std::uint32_t>(std::stoul(fields[2], nullptr, 16)));
        const auto type = codeText(static_cast<std::uint32_t>(std::stoul(fields[3], nullptr, 16)));
        const auto size = static_cast<std::uint32_t>(std::stoul(fields[4]));
        constexpr std::string_view unreadable = "unreadable:";
        const bool isReadable = !fields[6].starts_with(unreadable);
        set(key, type, isReadable ? fromHex(fields[6]) : Bytes());
        keys_[key].reportedSize = size;
        if (!isReadable) {
            keys_[key].readResult =
                static_cast<std::uint8_t>(std::stoul(fields[6].substr(unreadable.size()), nullptr, 16));
        }
    }
    return true;
}

void ScriptedSMC::addOlderFans(int count) {
    setNumber("FNum", "ui8 ", count);
    setNumber("FS! ", "ui16", 0);
    for (int fan = 0; fan < count; ++fan) {
        const std::string prefix = "F" + std::to_string(fan);
        setNumber(prefix + "Ac", "fpe2", 2000);
        setNumber(prefix + "Mn", "fpe2", 1200);
        setNumber(prefix + "Mx", "fpe2", 6000);
        setNumber(prefix + "Tg", "fpe2", 2000);
    }
}

void ScriptedSMC::addUnlockableFans(int count) {
    modesNeedUnlock_ = true;
    setNumber("FNum", "ui8 ", count);
    setNumber("Ftst", "ui8 ", 0);
    for (int fan = 0; fan < count; ++fan) {
        const std::string prefix = "F" + std::to_string(fan);
        setNumber(prefix + "Ac", "flt ", 2000);
        setNumber(prefix + "Mn", "flt ", 1200);
        setNumber(prefix + "Mx", "flt ", 6000);
        setNumber(prefix + "Tg", "flt ", 2000);
        setNumber(prefix + "Md", "ui8 ", 0);
    }
}

bool ScriptedSMC::isDead() const {
    return diesAtRequest && requests.size() > *diesAtRequest;
}

ScriptedSMC::Reply ScriptedSMC::answer(const SMCParam& request) {
    const std::lock_guard lock(oneAtATime_);
    requests.push_back(request);
    if (isDead()) {
        return std::nullopt;
    }
    if (hook) {
        if (const auto reply = hook(request)) {
            return *reply;
        }
    }
    return answerFromTable(request);
}

std::optional<ScriptedSMC::Reply> ScriptedSMC::exitAtWrite(const SMCParam& request) {
    if (request.data8 == SMCCommand::writeKey) {
        std::_Exit(3);
    }
    return std::nullopt;
}

ScriptedSMC::Reply ScriptedSMC::answerFromTable(const SMCParam& request) {
    SMCParam output{};
    const auto refuse = [&](std::uint8_t result) {
        output.result = result;
        return output;
    };
    if (request.data8 == SMCCommand::keyByIndex) {
        if (request.data32 >= order_.size()) {
            return refuse(SMCResult::indexRange);
        }
        output.key = SMC::fourCC(order_[request.data32]);
        return output;
    }
    const std::string name = codeText(request.key);
    const Key keyCount{.type = "ui32", .bytes = bigEndian(static_cast<std::uint32_t>(order_.size()), 4)};
    const auto entry = keys_.find(name);
    if (entry == keys_.end() && (name != "#KEY" || request.data8 == SMCCommand::writeKey)) {
        return refuse(SMCResult::keyNotFound);
    }
    const Key& key = entry == keys_.end() ? keyCount : entry->second;
    switch (request.data8) {
    case SMCCommand::keyInfo:
        output.keyInfo.dataSize = key.reportedSize.value_or(static_cast<std::uint32_t>(key.bytes.size()));
        output.keyInfo.dataType = SMC::fourCC(key.type);
        return output;
    case SMCCommand::readKey:
        if (key.readResult != SMCResult::success) {
            return refuse(key.readResult);
        }
        std::ranges::copy(std::span(key.bytes).first(std::min(key.bytes.size(), output.bytes.size())),
                          output.bytes.begin());
        return output;
    case SMCCommand::writeKey:
        return refuse(write(request));
    default:
        return std::nullopt;
    }
}

std::uint8_t ScriptedSMC::write(const SMCParam& request) {
    const std::string name = codeText(request.key);
    Key& key = keys_.find(name)->second;
    const std::size_t size = std::min<std::size_t>(request.keyInfo.dataSize, request.bytes.size());
    const Bytes bytes(request.bytes.begin(), request.bytes.begin() + static_cast<std::ptrdiff_t>(size));
    std::uint8_t result = key.writeResult;
    // A fan may be handed back (0) even while the modes are locked.
    if (result == SMCResult::success && request.bytes[0] != 0 && isModeLocked(name)) {
        result = SMCResult::notWritable;
    }
    if (result == SMCResult::success) {
        key.bytes = bytes;
    }
    writes.push_back({.key = name, .bytes = bytes, .accepted = result == SMCResult::success});
    return result;
}

bool ScriptedSMC::isModeLocked(const std::string& key) {
    if (!modesNeedUnlock_ || !isModeKey(key)) {
        return false;
    }
    if (number("Ftst") != 1) {
        return true;
    }
    return refusedModeWrites > 0 && refusedModeWrites-- > 0;
}

} // namespace Fenwhirl
