// Fuzzes the stored settings of the fans with arbitrary bytes: decoding never stops the process, and decoded
// settings survive being stored again.

#include "Fenwhirl/Monitoring/FanSettingsJSON.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace Fenwhirl {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto settings =
        decodeFanSettings(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    if (!settings) {
        return 0;
    }
    const auto stored = encodeFanSettings(*settings);
    if (!stored || decodeFanSettings(*stored) != settings) {
        std::abort();
    }
    const TemperatureReading readings[] = {{"TC0P", 61.5}, {"TG0P", 70}};
    for (const auto& [index, setting] : *settings) {
        const bool plausible = index >= 0 && std::isfinite(setting.constantRPM) &&
                               std::isfinite(setting.startTemp) && std::isfinite(setting.maxTemp);
        const auto target = targetRPM(setting, 1200, 6000, readings, 61.5);
        const bool inRange = !target || (*target >= 1200 && *target <= 6000);
        if (!plausible || !inRange || (setting.mode == FanModeKind::automatic) == target.has_value()) {
            std::abort();
        }
    }
    return 0;
}

} // namespace Fenwhirl
