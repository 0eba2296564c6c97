#include "FenwhirlCore/RecordedTable.h"

#include "Support/TestLocale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <regex.h>

namespace Fenwhirl {

namespace {

std::string characters(const std::string& hex) {
    std::string text;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        text += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return text;
}

std::string withTwoDecimals(double number) {
    const InCLocale plain;
    char text[64] = {};
    std::snprintf(text, sizeof(text), "%.2f", number);
    return text;
}

} // namespace

RecordedTable::RecordedTable(const std::string& path) {
    std::ifstream file(path);
    // The C library's expressions, because those of the standard library take three seconds to compile.
    regex_t row{};
    if (::regcomp(&row, "^[0-9]+,.*,([0-9A-F]{8}),([0-9A-F]{8}),([0-9]+),[0-9A-F]*,(.*)$", REG_EXTENDED) !=
        0) {
        return;
    }
    for (std::string line; std::getline(file, line);) {
        std::array<regmatch_t, 5> matches{};
        if (::regexec(&row, line.c_str(), matches.size(), matches.data(), 0) != 0) {
            continue; // the header line
        }
        const auto field = [&](std::size_t number) {
            const auto begin = static_cast<std::size_t>(matches.at(number).rm_so);
            return line.substr(begin, static_cast<std::size_t>(matches.at(number).rm_eo) - begin);
        };
        RecordedKey key;
        key.name = characters(field(1));
        key.type = characters(field(2));
        key.size = std::stoul(field(3));
        key.hex = field(4);
        key.isReadable = key.hex.find("unreadable") == std::string::npos;
        keys.push_back(key);
    }
    ::regfree(&row);
}

const RecordedKey* RecordedTable::find(const std::string& name) const {
    for (const RecordedKey& key : keys) {
        if (key.name == name) {
            return &key;
        }
    }
    return nullptr;
}

std::optional<double> RecordedTable::value(const std::string& name) const {
    const RecordedKey* key = find(name);
    return key == nullptr ? std::nullopt : key->value();
}

std::vector<std::string> RecordedTable::sensors() const {
    std::vector<std::string> names;
    for (const RecordedKey& key : keys) {
        const auto celsius = key.value();
        const bool isSensor = key.name[0] == 'T' && (key.type == "sp78" || key.type == "flt ") && celsius &&
                              *celsius > 1 && *celsius < 130;
        if (isSensor && std::count(names.begin(), names.end(), key.name) == 0) {
            names.push_back(key.name);
        }
    }
    return names;
}

std::vector<unsigned> RecordedKey::bytes() const {
    std::vector<unsigned> numbers;
    for (std::size_t i = 0; i < std::min<std::size_t>(size, 32); ++i) {
        const std::string digits = 2 * i < hex.size() ? hex.substr(2 * i, 2) : "00";
        numbers.push_back(static_cast<unsigned>(std::stoi(digits, nullptr, 16)));
    }
    return numbers;
}

std::optional<double> RecordedKey::value() const {
    if (!isReadable) {
        return std::nullopt;
    }
    const auto b = bytes();
    if (type == "ui8 " && !b.empty()) {
        return b[0];
    }
    if (type == "ui16" && b.size() >= 2) {
        return b[0] * 256 + b[1];
    }
    if (type == "ui32" && b.size() >= 4) {
        return ((b[0] * 256.0 + b[1]) * 256 + b[2]) * 256 + b[3];
    }
    if (type == "fpe2" && b.size() >= 2) {
        return (b[0] * 256 + b[1]) / 4;
    }
    if (type == "sp78" && b.size() >= 2) {
        return (b[0] < 128 ? b[0] : b[0] - 256.0) + b[1] / 256.0;
    }
    if (type == "flt " && b.size() >= 4) {
        const unsigned exponent = b[3] % 128 * 2 + b[2] / 128;
        const double fraction = (b[2] % 128 * 65536.0 + b[1] * 256.0 + b[0]) / 8388608.0;
        const double size2 = exponent == 0 ? std::ldexp(fraction, -126)
                                           : std::ldexp(1 + fraction, static_cast<int>(exponent) - 127);
        return b[3] >= 128 ? -size2 : size2;
    }
    return std::nullopt;
}

std::string RecordedKey::line() const {
    if (!isReadable) {
        return name + " : illisible";
    }
    std::string dump;
    for (const unsigned byte : bytes()) {
        char text[8] = {};
        std::snprintf(text, sizeof(text), "%02X ", byte);
        dump += text;
    }
    if (!dump.empty()) {
        dump.pop_back();
    }
    const auto number = value();
    return name + " | type " + type + " | " + std::to_string(bytes().size()) + " octets | " + dump +
           " | valeur " + (number ? withTwoDecimals(*number) : "?");
}

} // namespace Fenwhirl
