// An independent, simple parser for a recorded key table: it gives what a person with the file and a
// calculator would expect the program to say. It shares no code with the program or with the controller in
// memory.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Fenwhirl {

struct RecordedKey {
    std::string name;
    std::string type;
    std::size_t size = 0;
    std::string hex; // the recorded value
    bool isReadable = true;

    // The value's bytes, at most 32; zeros where the recording has none.
    [[nodiscard]] std::vector<unsigned> bytes() const;
    [[nodiscard]] std::optional<double> value() const;
    // The key's line in the report.
    [[nodiscard]] std::string line() const;
};

struct RecordedTable {
    explicit RecordedTable(const std::string& path);

    [[nodiscard]] const RecordedKey* find(const std::string& name) const;
    [[nodiscard]] std::optional<double> value(const std::string& name) const;
    [[nodiscard]] std::vector<std::string> sensors() const;

    std::vector<RecordedKey> keys;
};

} // namespace Fenwhirl
