// Which keys the kernel's drivers offer on this computer, and in which file each value is.
//
// The list is built once per connection and then stays unchanged, so that enumeration by index is
// stable. Plain values; the files are used during the calls only. A file that cannot be read
// yields no key, never an error.

#pragma once

#include "FenwhirlCore/Platform/DriverFiles.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl {

// How a driver lets a fan be controlled, recognised by the files that it offers.
enum class FanControlStyle {
    readOnly,
    manualAndOutput, // fanN_manual and fanN_output: applesmc
    targetOnly,      // fanN_target, where 0 means automatic: macsmc_hwmon
    targetAndEnable, // fanN_target and fanN_enable, 1 = automatic: t2smc
    targetAndPwm,    // fanN_target and pwmN_enable, 1 = manual
};

struct DriverKey {
    enum class Source { keyCount, fanCount, fanSpeed, fanTarget, fanMode, temperature };

    std::string name;      // four characters
    std::uint32_t code;    // the same as a number
    std::string_view type; // "sp78", "fpe2", "flt ", "ui8 ", "ui32"
    std::uint32_t size;    // bytes
    Source source;
    int fanChannel;   // 1-based as in the file names; 0 for a key that belongs to no fan
    std::string file; // under the driver's folder; empty for a count, or when no file exists
};

struct DriverKeyTable {
    std::string folder;                // contains the attribute files
    bool isIntelDriver;                // fixed-point types, like that firmware; floating point otherwise
    std::vector<DriverKey> keys;       // in bytewise order
    std::vector<FanControlStyle> fans; // by zero-based fan index
    bool seesProcessor;                // at least one temperature is the processor's

    [[nodiscard]] const DriverKey* find(std::uint32_t code) const;
};

// Looks for a driver; nothing when there is none.
[[nodiscard]] std::optional<DriverKeyTable> discoverDriverKeys(DriverFiles& files);

// The number at the end of "hwmon12" or in the middle of "fan3_input". The name must consist of prefix,
// digits and suffix, and nothing else.
[[nodiscard]] std::optional<int> channelNumber(std::string_view name, std::string_view prefix,
                                               std::string_view suffix);

} // namespace Fenwhirl
