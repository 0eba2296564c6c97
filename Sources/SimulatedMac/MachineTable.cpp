#include "SimulatedMac/MachineTable.h"

#include "FenwhirlCore/SMCRecord.h"
#include "SimulatedMac/TextParsing.h"
#include "SimulatedMac/ValueCoding.h"

#include <algorithm>
#include <utility>

namespace simulated {

namespace {

constexpr std::string_view header = "index,key,key_hex,type_hex,size,attributes_hex,value_hex";
constexpr std::string_view unreadable = "unreadable:";

// The record of a line, or absent; `error` then says why.
std::optional<KeyRecord> parseLine(std::string_view line, std::size_t index, std::string& error) {
    const auto fields = splitFields(line, ',');
    // The key column may itself contain the separator, so the columns after it are counted from the end.
    if (fields.size() < 7) {
        error = "fewer than seven columns";
        return std::nullopt;
    }
    const auto last = fields.end();
    const auto number = parseWhole(fields[0]);
    const auto code = parseHex(*(last - 5));
    const auto type = parseHex(*(last - 4));
    const auto size = parseWhole(*(last - 3));
    const auto attributes = parseHex(*(last - 2));
    const std::string_view value = *(last - 1);
    if (number != index) {
        error = "the index is not " + std::to_string(index);
        return std::nullopt;
    }
    if (!code || !type || !size || *size > 0xFFFFFFFFU || !attributes || *attributes > 0xFF) {
        error = "the key, its type, its size or its attributes are not a number of their width";
        return std::nullopt;
    }
    KeyRecord record{.code = *code,
                     .type = *type,
                     .size = static_cast<std::uint32_t>(*size),
                     .attributes = static_cast<std::uint8_t>(*attributes)};
    if (value.starts_with(unreadable)) {
        const auto result = parseHex(value.substr(unreadable.size()));
        if (!result || *result == 0 || *result > 0xFF) {
            error = "the result of reading is not a hexadecimal number from 01 to FF";
            return std::nullopt;
        }
        record.readResult = static_cast<std::uint8_t>(*result);
        return record;
    }
    if ((record.attributes & attributeReadable) == 0) {
        record.readResult = Fenwhirl::SMCResult::notReadable;
    }
    const auto bytes = parseHexBytes(value, record.bytes.size());
    if (!bytes || (!bytes->empty() && bytes->size() != std::min<std::size_t>(record.size, 32))) {
        error = "the value is not hexadecimal or has another size";
        return std::nullopt;
    }
    std::copy(bytes->begin(), bytes->end(), record.bytes.begin());
    return record;
}

char lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

} // namespace

std::optional<MachineTable> parseMachineTable(std::string_view name, std::string_view csv,
                                              std::string& error) {
    MachineTable table{.name = std::string(name), .keys = {}};
    std::size_t lineNumber = 0;
    while (!csv.empty()) {
        const std::size_t end = csv.find('\n');
        std::string_view line = csv.substr(0, end);
        csv.remove_prefix(end == std::string_view::npos ? csv.size() : end + 1);
        ++lineNumber;
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (lineNumber == 1) {
            if (line != header) {
                error = "line 1: not the expected column names";
                return std::nullopt;
            }
            continue;
        }
        if (line.empty()) {
            continue;
        }
        std::string reason;
        auto record = parseLine(line, table.keys.size(), reason);
        if (!record) {
            error = "line " + std::to_string(lineNumber) + ": " + reason + ": " + std::string(line);
            return std::nullopt;
        }
        table.keys.push_back(*record);
    }
    if (table.keys.empty()) {
        error = "no keys";
        return std::nullopt;
    }
    return table;
}

std::optional<MachineTable> findMachine(std::string_view name) {
    for (const EmbeddedTable& embedded : embeddedTables()) {
        if (sameName(embedded.name, name)) {
            std::string error;
            return parseMachineTable(embedded.name, embedded.csv, error);
        }
    }
    return std::nullopt;
}

std::string describeMachine(const MachineTable& table) {
    double fans = 0;
    std::size_t sensors = 0;
    std::string control;
    std::string unlock;
    for (const KeyRecord& key : table.keys) {
        if (key.code == fourCC("FNum")) {
            fans = decodeValue(key.type, key.bytes).value_or(0);
        } else if (key.code == fourCC("FS! ")) {
            control = ", forced-fan mask";
        } else if (key.code == fanKey(0, "Md") || key.code == fanKey(0, "md")) {
            control = ", mode keys";
        } else if (key.code == fourCC("Ftst")) {
            unlock = " behind an unlock flag";
        }
        const bool temperatureType = key.type == fourCC("sp78") || key.type == fourCC("flt ");
        sensors += (key.code >> 24) == 'T' && temperatureType && key.readResult == 0 ? 1 : 0;
    }
    const std::string count = fans > 0 ? fixedText(fans, 0) : std::string("no");
    return count + (count == "1" ? " fan" : " fans") + control + unlock + ", " + std::to_string(sensors) +
           " temperature keys, " + std::to_string(table.keys.size()) + " keys";
}

} // namespace simulated
