// A controller in memory: a table of keys that tests fill, break and inspect.
//
// It answers key info, reads, writes and enumeration from the table as the firmware does, with the firmware's
// result codes. Every request and every write is logged, and waiting takes no time. Faults are scripted: a
// hook sees each request before the table does and may answer in its place.
//
// One controller serves any number of connections (`connect`), as the hardware does; it must outlive them.
// Threads: none of its own. Connections may be used concurrently; requests are answered one at a time. Tests
// may change or read the public members only while no connection is in use.

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

namespace Fenwhirl {

class ScriptedSMC {
public:
    using Bytes = std::vector<std::uint8_t>;

    struct Key {
        std::string type;
        Bytes bytes;
        std::optional<std::uint32_t> reportedSize = std::nullopt; // when it differs from the number of bytes
        std::uint8_t readResult = SMCResult::success;             // the result of a read
        std::uint8_t writeResult = SMCResult::success;            // the result of a write
    };

    // One write request, whether it was accepted or not.
    struct Write {
        std::string key;
        Bytes bytes; // as many as the request declared, at most 32
        bool accepted;

        bool operator==(const Write&) const = default;
    };

    // A hook's answer. No value: the table answers. An empty reply: the round trip fails.
    using Reply = std::optional<SMCParam>;
    using Hook = std::function<std::optional<Reply>(const SMCParam& request)>;

    // --- The table: enumeration follows the order in which keys were first set; "#KEY" is their number ---
    void set(std::string_view key, std::string_view type, Bytes bytes);
    // Accepts every decodable type, including "sp78" and "ui32". Precondition: the number fits the type.
    void setNumber(std::string_view key, std::string_view type, double number);
    void remove(std::string_view key);
    // The entry of an existing key, for changes in place.
    [[nodiscard]] Key& at(std::string_view key);
    [[nodiscard]] bool has(std::string_view key) const;
    // The key's value as the program would decode it; NaN when there is none.
    [[nodiscard]] double number(std::string_view key) const;
    // Replaces the table with a recorded one, one line per key (see the files in Sources/SimulatedMac).
    // Returns false when the file cannot be read.
    [[nodiscard]] bool loadTable(const std::string& path);
    // Adds the mask "FS! " and fans 0 to count-1 of type "fpe2" without mode keys: 1200 to 6000 rpm,
    // currently 2000.
    void addOlderFans(int count);
    // Adds fans of type "flt " with mode keys "F{i}Md" and the unlock key "Ftst". While locked, the modes
    // accept only 0.
    void addUnlockableFans(int count);

    // --- Faults ---
    Hook hook;
    // A hook for death tests, whose log of writes is lost with the child: a write ends the process, with status 3.
    [[nodiscard]] static std::optional<Reply> exitAtWrite(const SMCParam& request);
    // The connection is dead from this request on (counted from 0 over all connections).
    std::optional<std::size_t> diesAtRequest;
    // How many more attempts to make a fan manual are refused although the fans are unlocked.
    int refusedModeWrites = 0;

    // --- What happened ---
    std::vector<SMCParam> requests;
    std::vector<Write> writes;
    std::chrono::milliseconds waited{0};

    [[nodiscard]] std::unique_ptr<SMCTransport> connect();

    // Opens a connection as the program does.
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

} // namespace Fenwhirl
