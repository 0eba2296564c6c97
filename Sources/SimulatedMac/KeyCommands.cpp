#include "FenwhirlCore/SMCRecord.h"
#include "SimulatedMac/CommandHandlers.h"
#include "SimulatedMac/TextParsing.h"
#include "SimulatedMac/ValueCoding.h"

#include <algorithm>
#include <functional>

namespace simulated {

namespace {

std::span<const std::uint8_t> visible(const KeyRecord& record, const ValueBytes& bytes) {
    return {bytes.data(), std::min<std::size_t>(record.size, bytes.size())};
}

std::string trimmed(FourCC code) {
    std::string text = fourCCText(code);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string describe(const Key& key) {
    const auto bytes = visible(key.record, key.shown());
    const auto value = decodeValue(key.record.type, bytes);
    std::string text = trimmed(key.record.code) + " type=" + trimmed(key.record.type) +
                       " size=" + std::to_string(key.record.size) +
                       " bytes=" + (bytes.empty() ? "-" : hexText(bytes)) +
                       " value=" + (value ? fixedText(*value, 2) : "?");
    const std::uint8_t result =
        key.vanished ? Fenwhirl::SMCResult::keyNotFound : key.fault.value_or(key.record.readResult);
    if (result != 0) {
        text += " unreadable=" + hexText({&result, 1});
    }
    return text + (key.pinned ? " pinned" : "");
}

// The key that the first word names; null, with `error` set, when there is none.
Key* namedKey(CommandContext& context, Words words, std::size_t count, std::string& error) {
    if (words.size() != count) {
        error = failed("wrong number of arguments; help shows them");
        return nullptr;
    }
    const auto code = parseFourCC(words[0]);
    Key* const key = code ? context.mac.keys().find(*code) : nullptr;
    if (key == nullptr) {
        error = failed("no key \"" + std::string(words[0]) + "\" on this machine");
    }
    return key;
}

// Applies a change to the named key, or to every key when the word is "all".
CommandOutcome forKeyOrAll(CommandContext& context, Words words, const std::function<void(Key&)>& change) {
    if (words.size() == 1 && words[0] == "all") {
        for (std::size_t i = 0; i < context.mac.keys().count(); ++i) {
            change(context.mac.keys().at(i));
        }
        return ok();
    }
    std::string error;
    Key* const key = namedKey(context, words, 1, error);
    if (key == nullptr) {
        return error;
    }
    change(*key);
    return ok(describe(*key));
}

} // namespace

CommandOutcome runGet(CommandContext& context, Words words, Instant /*now*/) {
    std::string error;
    const Key* const key = namedKey(context, words, 1, error);
    return key == nullptr ? error : ok(describe(*key));
}

CommandOutcome runKeys(CommandContext& context, Words words, Instant /*now*/) {
    const std::string_view prefix = words.empty() ? std::string_view() : words[0];
    std::string text;
    std::size_t count = 0;
    for (std::size_t i = 0; i < context.mac.keys().count(); ++i) {
        const Key& key = context.mac.keys().at(i);
        if (fourCCText(key.record.code).starts_with(prefix)) {
            text += std::to_string(i) + " " + describe(key) + "\n";
            ++count;
        }
    }
    return text + ok(std::to_string(count) + " keys");
}

CommandOutcome runSet(CommandContext& context, Words words, Instant /*now*/) {
    std::string error;
    Key* const key = namedKey(context, words, 2, error);
    if (key == nullptr) {
        return error;
    }
    const auto number = parseNumber(words[1]);
    ValueBytes bytes{};
    if (!number || !encodeValue(key->record.type, *number, bytes)) {
        return failed(number ? "this key's type is no number; pin takes bytes" : "not a number");
    }
    key->pinned = bytes;
    return ok(describe(*key));
}

CommandOutcome runPin(CommandContext& context, Words words, Instant /*now*/) {
    std::string error;
    Key* const key = namedKey(context, words, 2, error);
    if (key == nullptr) {
        return error;
    }
    const auto bytes = parseHexBytes(words[1], sizeof(ValueBytes));
    if (!bytes) {
        return failed("expected up to 32 bytes as pairs of hexadecimal digits");
    }
    key->pinned = ValueBytes{};
    std::copy(bytes->begin(), bytes->end(), key->pinned->begin());
    return ok(describe(*key));
}

CommandOutcome runWrite(CommandContext& context, Words words, Instant now) {
    std::string error;
    const Key* const key = namedKey(context, words, 2, error);
    if (key == nullptr) {
        return error;
    }
    const auto number = parseNumber(words[1]);
    Fenwhirl::SMCParam request{};
    request.key = key->record.code;
    request.data8 = Fenwhirl::SMCCommand::writeKey;
    request.keyInfo.dataSize = key->record.size;
    if (!number || !encodeValue(key->record.type, *number, request.bytes)) {
        return failed(number ? "this key's type is no number" : "not a number");
    }
    constexpr Peer anotherProgram{.process = 0, .user = 0};
    const Reply reply = context.mac.handle(request, anotherProgram, now);
    if (reply.kernelReturn != 0 || reply.record.result != Fenwhirl::SMCResult::success) {
        return failed("the write was refused");
    }
    return ok(describe(*key));
}

CommandOutcome runUnpin(CommandContext& context, Words words, Instant /*now*/) {
    return forKeyOrAll(context, words, [](Key& key) { key.pinned.reset(); });
}

CommandOutcome runVanish(CommandContext& context, Words words, Instant /*now*/) {
    return forKeyOrAll(context, words, [](Key& key) { key.vanished = true; });
}

CommandOutcome runUnreadable(CommandContext& context, Words words, Instant /*now*/) {
    const auto result = words.size() > 1 ? parseHex(words[1]) : Fenwhirl::SMCResult::notReadable;
    if (words.size() > 2 || !result || *result == 0 || *result > 0xFF) {
        return failed("expected KEY and a result of two hexadecimal digits");
    }
    return forKeyOrAll(context, words.first(std::min<std::size_t>(1, words.size())),
                       [&](Key& key) { key.fault = static_cast<std::uint8_t>(*result); });
}

CommandOutcome runRestore(CommandContext& context, Words words, Instant /*now*/) {
    if (words.size() == 1 && words[0] == "all") {
        context.mac.keys().refusalOfAll.reset();
    }
    return forKeyOrAll(context, words, [](Key& key) {
        key.pinned.reset();
        key.fault.reset();
        key.refusal.reset();
        key.vanished = false;
    });
}

CommandOutcome runDefine(CommandContext& context, Words words, Instant /*now*/) {
    if (words.size() != 4 && words.size() != 5) {
        return failed("expected KEY TYPE SIZE ATTRIBUTES [HEXBYTES]");
    }
    const auto code = parseFourCC(words[0]);
    const auto type = parseFourCC(words[1]);
    const auto size = parseWhole(words[2]);
    const auto attributes = parseHex(words[3]);
    const auto bytes = parseHexBytes(words.size() > 4 ? words[4] : std::string_view(), sizeof(ValueBytes));
    if (!code || !type || !size || *size > 0xFFFFFFFFU || !attributes || *attributes > 0xFF || !bytes) {
        return failed("expected KEY TYPE SIZE ATTRIBUTES [HEXBYTES]");
    }
    KeyRecord record{.code = *code,
                     .type = *type,
                     .size = static_cast<std::uint32_t>(*size),
                     .attributes = static_cast<std::uint8_t>(*attributes)};
    record.readResult = (*attributes & attributeReadable) != 0 ? Fenwhirl::SMCResult::success
                                                               : Fenwhirl::SMCResult::notReadable;
    std::copy(bytes->begin(), bytes->end(), record.bytes.begin());
    context.mac.defineKey(record);
    return ok(describe(*context.mac.keys().find(*code)));
}

CommandOutcome runRefuse(CommandContext& context, Words words, Instant /*now*/) {
    WriteRefusal refusal{.kernelReturn = 0, .result = Fenwhirl::SMCResult::notWritable};
    if (words.size() == 2 && words[1] == "kernel") {
        refusal = {.kernelReturn = Fenwhirl::KernelReturn::notPrivileged, .result = 0};
    } else if (words.size() == 2) {
        const auto result = parseHex(words[1]);
        if (!result || *result == 0 || *result > 0xFF) {
            return failed("expected a result of two hexadecimal digits, or kernel");
        }
        refusal.result = static_cast<std::uint8_t>(*result);
    } else if (words.size() != 1) {
        return failed("expected KEY or all");
    }
    if (words[0] == "all") {
        context.mac.keys().refusalOfAll = refusal;
        return ok();
    }
    return forKeyOrAll(context, words.first(1), [&](Key& key) { key.refusal = refusal; });
}

CommandOutcome runAccept(CommandContext& context, Words words, Instant /*now*/) {
    if (words.size() == 1 && words[0] == "all") {
        context.mac.keys().refusalOfAll.reset();
    }
    return forKeyOrAll(context, words, [](Key& key) { key.refusal.reset(); });
}

} // namespace simulated
