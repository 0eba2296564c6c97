// From a driver's temperature channel to the controller's four-character key.
//
// The Intel drivers label each channel with the key itself. The Apple Silicon driver labels it with words,
// and the key has to be found in the device tree. What cannot be found gets a key of our own, "T~" and two
// characters made from the label, the same at every start; real keys are alphanumeric, so the two never meet.

#pragma once

#include "FenwhirlCore/Platform/DriverFiles.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct DriverSensor {
    int channel;                      // as in temp3_input
    std::optional<std::string> label; // what the driver calls it
    std::string key;                  // four characters, filled by nameDriverSensors
};

// Fills the keys, all different. `device` is the hwmon folder. Earlier channels come first when two would
// share a key.
void nameDriverSensors(DriverFiles& files, const std::string& device, std::vector<DriverSensor>& sensors);

// The place of a label among the 3844 keys of our own: the 32-bit FNV-1a hash, taken modulo that number.
[[nodiscard]] unsigned ownKeyNumber(std::string_view label);
[[nodiscard]] std::string ownKey(unsigned number);
