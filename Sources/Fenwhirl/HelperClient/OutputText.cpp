#include "Fenwhirl/HelperClient/OutputText.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Fenwhirl {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

// What may follow a lead byte: the length of the sequence, and the range of its second byte, which excludes
// overlong forms, surrogates and values beyond Unicode (table 3-7 of the Unicode standard, chapter 3).
struct Sequence {
    std::size_t length; // 0: not a lead byte
    std::uint8_t secondFrom;
    std::uint8_t secondTo;
};

Sequence sequenceOf(std::uint8_t lead) {
    if (lead < 0x80) {
        return {.length = 1, .secondFrom = 0, .secondTo = 0};
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {.length = 2, .secondFrom = 0x80, .secondTo = 0xBF};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return {.length = 3,
                .secondFrom = static_cast<std::uint8_t>(lead == 0xE0 ? 0xA0 : 0x80),
                .secondTo = static_cast<std::uint8_t>(lead == 0xED ? 0x9F : 0xBF)};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return {.length = 4,
                .secondFrom = static_cast<std::uint8_t>(lead == 0xF0 ? 0x90 : 0x80),
                .secondTo = static_cast<std::uint8_t>(lead == 0xF4 ? 0x8F : 0xBF)};
    }
    return {.length = 0, .secondFrom = 0, .secondTo = 0};
}

// How many bytes at the start of `bytes` belong together, and whether they form a character.
struct Piece {
    std::size_t length;
    bool isValid;
};

Piece nextPiece(std::string_view bytes) {
    const auto at = [bytes](std::size_t index) { return static_cast<std::uint8_t>(bytes[index]); };
    const Sequence sequence = sequenceOf(at(0));
    if (sequence.length == 0) {
        return {.length = 1, .isValid = false};
    }
    for (std::size_t index = 1; index < sequence.length; ++index) {
        const std::uint8_t from = index == 1 ? sequence.secondFrom : 0x80;
        const std::uint8_t to = index == 1 ? sequence.secondTo : 0xBF;
        if (index >= bytes.size() || at(index) < from || at(index) > to) {
            return {.length = index, .isValid = false};
        }
    }
    return {.length = sequence.length, .isValid = true};
}

constexpr std::array<std::string_view, 24> blanks = {
    " ",
    "\t",
    "\n",
    "\v",
    "\f",
    "\r",
    "\xC2\x85",
    "\xC2\xA0",
    "\xE1\x9A\x80",
    "\xE2\x80\x80",
    "\xE2\x80\x81",
    "\xE2\x80\x82",
    "\xE2\x80\x83",
    "\xE2\x80\x84",
    "\xE2\x80\x85",
    "\xE2\x80\x86",
    "\xE2\x80\x87",
    "\xE2\x80\x88",
    "\xE2\x80\x89",
    "\xE2\x80\x8A",
    "\xE2\x80\xA8",
    "\xE2\x80\xA9",
    "\xE2\x80\xAF",
    "\xE3\x80\x80",
};

std::size_t blankAtStart(std::string_view text) {
    for (const std::string_view blank : blanks) {
        if (text.starts_with(blank)) {
            return blank.size();
        }
    }
    return 0;
}

std::size_t blankAtEnd(std::string_view text) {
    for (const std::string_view blank : blanks) {
        if (text.ends_with(blank)) {
            return blank.size();
        }
    }
    return 0;
}

} // namespace

std::string repairedUTF8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Piece piece = nextPiece(bytes);
        text += piece.isValid ? bytes.substr(0, piece.length) : replacement;
        bytes.remove_prefix(piece.length);
    }
    return text;
}

std::string trimmed(std::string_view text) {
    while (const std::size_t length = blankAtStart(text)) {
        text.remove_prefix(length);
    }
    while (const std::size_t length = blankAtEnd(text)) {
        text.remove_suffix(length);
    }
    return std::string(text);
}

} // namespace Fenwhirl
