// Maps a driver's temperature channels to the controller's four-character keys.
//
// The Intel drivers label each channel with the key itself. The Apple Silicon driver uses descriptive labels,
// and the key has to be looked up in the device tree. A channel whose key cannot be found gets a made-up key,
// "T~" followed by two characters derived from the label, the same at every start. Real keys are
// alphanumeric, so the two kinds never collide.

#pragma once

#include "FenwhirlCore/Platform/DriverFiles.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl {

struct DriverSensor {
    int channel;                      // as in temp3_input
    std::optional<std::string> label; // as the driver reports it
    std::string key;                  // four characters, filled by nameDriverSensors
};

// Fills in the keys, which are all different. `device` is the hwmon folder. When two channels would share a
// key, the earlier one gets it.
void nameDriverSensors(DriverFiles& files, const std::string& device, std::vector<DriverSensor>& sensors);

// The index of a label among the 3844 made-up keys: its 32-bit FNV-1a hash modulo that number.
[[nodiscard]] unsigned syntheticKeyNumber(std::string_view label);
[[nodiscard]] std::string syntheticKey(unsigned number);

} // namespace Fenwhirl
