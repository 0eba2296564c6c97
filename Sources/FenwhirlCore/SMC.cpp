// Key access: the round trips that fans, temperatures and the report are built on.

#include "FenwhirlCore/SMC.h"

#include "FenwhirlCore/FourCC.h"
#include "FenwhirlCore/NumberText.h"
#include "FenwhirlCore/Precondition.h"
#include "FenwhirlCore/SMCValue.h"

#include <algorithm>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr std::size_t bytesInRecord = sizeof(SMCParam::bytes);

SMCParam request(std::uint8_t command, std::string_view key) {
    SMCParam input{};
    input.key = SMC::fourCC(key);
    input.data8 = command;
    return input;
}

} // namespace

std::span<const std::uint8_t> SMC::Value::visibleBytes() const {
    return std::span(bytes).first(std::min<std::size_t>(info.size, bytes.size()));
}

std::optional<double> SMC::Value::number() const {
    return SMCValue::decode(SMC::string(info.type), visibleBytes());
}

std::unique_ptr<SMC> SMC::open() {
    auto transport = openSystemTransport();
    return transport ? std::make_unique<SMC>(std::move(transport)) : nullptr;
}

SMC::SMC(std::unique_ptr<SMCTransport> transport) : transport_(std::move(transport)) {}

void SMC::setStopFlag(const std::atomic<bool>* stopFlag) {
    stopFlag_ = stopFlag;
}

bool SMC::shouldStop() const {
    return (stopFlag_ != nullptr && stopFlag_->load(std::memory_order_relaxed)) || transport_->isDead();
}

std::optional<SMCParam> SMC::call(const SMCParam& input) {
    auto output = transport_->call(input);
    if (output && output->result != SMCResult::success) {
        output.reset();
    }
    return output;
}

std::optional<SMC::KeyInfo> SMC::info(std::string_view key) {
    const auto output = call(request(SMCCommand::keyInfo, key));
    if (!output) {
        return std::nullopt;
    }
    return KeyInfo{.size = output->keyInfo.dataSize, .type = output->keyInfo.dataType};
}

bool SMC::hasKey(std::string_view key) {
    return info(key).has_value();
}

std::optional<SMC::Value> SMC::read(std::string_view key) {
    const auto keyInfo = info(key);
    return keyInfo ? read(key, *keyInfo) : std::nullopt;
}

std::optional<SMC::Value> SMC::read(std::string_view key, KeyInfo keyInfo) {
    SMCParam input = request(SMCCommand::readKey, key);
    input.keyInfo.dataSize = keyInfo.size;
    const auto output = call(input);
    if (!output) {
        return std::nullopt;
    }
    return Value{.info = keyInfo, .bytes = output->bytes};
}

std::optional<SMC::RawValue> SMC::readBytes(std::string_view key) {
    const auto value = read(key);
    if (!value) {
        return std::nullopt;
    }
    const auto bytes = value->visibleBytes();
    return RawValue{.type = string(value->info.type), .bytes = {bytes.begin(), bytes.end()}};
}

std::optional<double> SMC::readValue(std::string_view key) {
    const auto value = read(key);
    return value ? value->number() : std::nullopt;
}

bool SMC::writeBytes(std::string_view key, std::uint32_t size, std::span<const std::uint8_t> bytes) {
    SMCParam input = request(SMCCommand::writeKey, key);
    input.keyInfo.dataSize = size;
    std::ranges::copy(bytes.first(std::min(bytes.size(), bytesInRecord)), input.bytes.begin());
    return call(input).has_value();
}

bool SMC::writeValue(std::string_view key, double value) {
    const auto keyInfo = info(key);
    if (!keyInfo) {
        return false;
    }
    const auto bytes = SMCValue::encode(string(keyInfo->type), value);
    return bytes && writeBytes(key, keyInfo->size, *bytes);
}

std::uint64_t SMC::keyIndexEnd() {
    const auto count = readValue("#KEY");
    if (!count) {
        return 0;
    }
    const auto whole = NumberText::exactWhole(*count);
    if (!whole) {
        stopOnBrokenPrecondition();
    }
    constexpr std::int64_t indexesInRecord = std::int64_t{1} << 32U;
    return static_cast<std::uint64_t>(std::clamp<std::int64_t>(*whole, 0, indexesInRecord));
}

std::optional<std::string> SMC::keyAt(std::uint32_t index) {
    SMCParam input{};
    input.data8 = SMCCommand::keyByIndex;
    input.data32 = index;
    const auto output = call(input);
    if (!output) {
        return std::nullopt;
    }
    return string(output->key);
}

std::vector<std::string> SMC::allKeys() {
    std::vector<std::string> keys;
    const std::uint64_t end = keyIndexEnd();
    for (std::uint64_t index = 0; index < end && !shouldStop(); ++index) {
        if (auto key = keyAt(static_cast<std::uint32_t>(index))) {
            keys.push_back(*std::move(key));
        }
    }
    return keys;
}

std::uint32_t SMC::fourCC(std::string_view text) {
    return fourCharacterCode(text);
}

std::string SMC::string(std::uint32_t code) {
    constexpr std::uint32_t beyondASCII = 0x80808080;
    if ((code & beyondASCII) != 0) {
        return {};
    }
    return {static_cast<char>(code >> 24U), static_cast<char>(code >> 16U & 0x7FU),
            static_cast<char>(code >> 8U & 0x7FU), static_cast<char>(code & 0x7FU)};
}

} // namespace Fenwhirl
