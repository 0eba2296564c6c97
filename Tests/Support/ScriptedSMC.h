// A controller in memory: a table of keys that tests fill, break and look at.
//
// Answers as firmware does: key info, reads, writes and enumeration from the table, with the firmware's
// result codes. Every request and every write is logged, waiting takes no time, and faults are scripted: a
// hook sees each request before the table does and may answer in its place.
//
// One controller serves any number of connections (`connect`), as the hardware does; it must outlive them.
// Threads: none of its own. Connections may be used side by side, one request is answered after the other;
// what tests set and look at is theirs while nobody asks.

#pragma once

#include "FenwhirlCore/SMC.h"
#include "FenwhirlCore/SMCTransport.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ScriptedSMC {
public:
    using Bytes = std::vector<std::uint8_t>;

    struct Key {
        std::string type;
        Bytes bytes;
        std::optional<std::uint32_t> reportedSize = std::nullopt; // when it is not the number of bytes
        std::uint8_t readResult = SMCResult::success;             // what a read answers
        std::uint8_t writeResult = SMCResult::success;            // what a write answers
    };

    // One request to write, whether it was accepted or not.
    struct Write {
        std::string key;
        Bytes bytes; // as many as the request said, at most 32
        bool accepted;

        bool operator==(const Write&) const = default;
    };

    // What a hook answers: nothing lets the table answer, an empty reply is a failed round trip.
    using Reply = std::optional<SMCParam>;
    using Hook = std::function<std::optional<Reply>(const SMCParam& request)>;

    // --- The table; enumeration follows the order in which keys were first set, "#KEY" counts them ---
    void set(std::string_view key, std::string_view type, Bytes bytes);
    // In any decodable type, "sp78" and "ui32" included. Precondition: the number fits the type.
    void setNumber(std::string_view key, std::string_view type, double number);
    void remove(std::string_view key);
    // The entry of an existing key, to be changed in place.
    [[nodiscard]] Key& at(std::string_view key);
    [[nodiscard]] bool has(std::string_view key) const;
    // The key's value as the program would decode it; NaN when there is none.
    [[nodiscard]] double number(std::string_view key) const;
    // Replaces the table by a recorded one: one line for each key (see the files in Sources/SimulatedMac).
    // False when the file cannot be read.
    [[nodiscard]] bool loadTable(const std::string& path);
    // A mask "FS! ", fans 0…count-1 of type "fpe2", without modes: 1200 to 6000 rpm, now 2000.
    void addOlderFans(int count);
    // Fans of type "flt " with modes "F{i}Md" and the unlock "Ftst"; without it the modes accept only
    // 0.
    void addUnlockableFans(int count);

    // --- Faults ---
    Hook hook;
    // From this request on (counted from 0 over all connections) the connection is dead.
    std::optional<std::size_t> diesAtRequest;
    // How many more attempts to make a fan manual are refused although it is unlocked.
    int refusedModeWrites = 0;

    // --- What happened ---
    std::vector<SMCParam> requests;
    std::vector<Write> writes;
    std::chrono::milliseconds waited{0};

    [[nodiscard]] std::unique_ptr<SMCTransport> connect();

    // A connection as the program uses it.
    [[nodiscard]] SMC open() { return SMC(connect()); }

private:
    class Connection;

    [[nodiscard]] Reply answer(const SMCParam& request);
    [[nodiscard]] Reply answerFromTable(const SMCParam& request);
    [[nodiscard]] std::uint8_t write(const SMCParam& request);
    [[nodiscard]] bool isModeLocked(const std::string& key);
    [[nodiscard]] bool isDead() const;

    std::mutex oneAtATime_;
    std::map<std::string, Key, std::less<>> keys_;
    std::vector<std::string> order_;
    bool modesNeedUnlock_ = false;
};
