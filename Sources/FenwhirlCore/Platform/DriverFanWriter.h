// Puts one fan under manual control, or hands it back, through the files of its driver.
//
// Results are 0 or a positive errno. Each write opens and closes its file: writes are rare, and a device that
// went away and came back needs a new descriptor.

#pragma once

#include "FenwhirlCore/Platform/DriverFiles.h"
#include "FenwhirlCore/Platform/DriverKeys.h"

#include <cstdint>
#include <string>

namespace Fenwhirl {

class DriverFanWriter {
public:
    // `channel` is 1-based as in the driver's file names. `files` must outlive the writer.
    DriverFanWriter(DriverFiles& files, std::string folder, int channel, FanControlStyle style);

    [[nodiscard]] int setManual(bool manual);
    // In whole revolutions per minute. Values below 1 are refused, because one driver
    // takes 0 for "automatic".
    [[nodiscard]] int setTarget(std::int64_t rpm);

private:
    [[nodiscard]] std::string file(std::string_view prefix, std::string_view suffix) const;
    [[nodiscard]] int write(const std::string& path, std::int64_t value);
    [[nodiscard]] int probe(const std::string& path);
    [[nodiscard]] std::optional<std::int64_t> read(const std::string& path);
    [[nodiscard]] bool hasUsableLimits();
    [[nodiscard]] int handBackByTarget();
    [[nodiscard]] bool mustRearm(std::int64_t currentTarget);
    void remember(std::int64_t rpm);
    void forget();

    DriverFiles& files_;
    std::string folder_;
    int channel_;
    FanControlStyle style_;
};

// Whether root has allowed manual control on a computer whose processor temperature cannot be seen.
[[nodiscard]] bool isManualControlAllowed(DriverFiles& files);

} // namespace Fenwhirl
