#include "FenwhirlCore/Platform/DriverSensorKeys.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr unsigned ownKeys = 62 * 62;
constexpr int maxDepth = 4; // levels to search; sensors may be grouped below the node

// The labels that the driver's own device trees use, for systems that hide the tree.
constexpr std::array<std::pair<std::string_view, std::string_view>, 4> knownLabels = {{
    {"NAND Flash Temperature", "TH0x"},
    {"Battery Hotspot", "TB0T"},
    {"Charge Regulator Temp", "TCHP"},
    {"WiFi/BT Module Temp", "TW0P"},
}};

bool isKey(std::string_view text) {
    return text.size() == 4 && text[0] == 'T' &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

// Device-tree strings end with a NUL.
std::optional<std::string> treeText(DriverFiles& files, const std::string& path) {
    std::optional<std::string> text = files.readText(path);
    if (text) {
        text->resize(std::min(text->find('\0'), text->size()));
    }
    return text;
}

void collectTreeLabels(DriverFiles& files, const std::string& folder, int depth,
                       std::map<std::string, std::string>& keyByLabel) {
    const std::vector<std::string> names = files.list(folder);
    if (std::binary_search(names.begin(), names.end(), "apple,key-id")) {
        const std::optional<std::string> key = treeText(files, folder + "/apple,key-id");
        for (const char* property : {"label", "apple,key-desc"}) {
            if (!std::binary_search(names.begin(), names.end(), property)) {
                continue;
            }
            const std::optional<std::string> label = treeText(files, folder + "/" + property);
            if (key && label && isKey(*key)) {
                keyByLabel.emplace(*label, *key);
            }
        }
    }
    if (depth == 0) {
        return;
    }
    for (const std::string& name : names) {
        std::string inner = folder;
        inner.append("/").append(name);
        collectTreeLabels(files, inner, depth - 1, keyByLabel);
    }
}

std::optional<std::string> keyFor(const std::string& label,
                                  const std::map<std::string, std::string>& keyByLabel) {
    if (isKey(label)) {
        return label;
    }
    if (const auto found = keyByLabel.find(label); found != keyByLabel.end()) {
        return found->second;
    }
    constexpr std::string_view die = "SoC die ";
    if (label.starts_with(die) && isKey(std::string_view(label).substr(die.size()))) {
        return label.substr(die.size());
    }
    for (const auto& [stock, key] : knownLabels) {
        if (label == stock) {
            return std::string(key);
        }
    }
    return std::nullopt;
}

} // namespace

unsigned syntheticKeyNumber(std::string_view label) {
    std::uint32_t hash = 2'166'136'261U;
    for (const char character : label) {
        hash ^= static_cast<std::uint8_t>(character);
        hash *= 16'777'619U;
    }
    return hash % ownKeys;
}

std::string syntheticKey(unsigned number) {
    constexpr std::string_view digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    return {'T', '~', digits[number / 62 % 62], digits[number % 62]};
}

void nameDriverSensors(DriverFiles& files, const std::string& device, std::vector<DriverSensor>& sensors) {
    std::map<std::string, std::string> keyByLabel;
    const bool wordsInUse = std::any_of(sensors.begin(), sensors.end(), [](const DriverSensor& sensor) {
        return sensor.label && !isKey(*sensor.label);
    });
    if (wordsInUse) {
        for (const char* node : {"/of_node", "/device/of_node"}) {
            collectTreeLabels(files, device + node, maxDepth, keyByLabel);
        }
    }

    std::set<std::string> taken;
    std::vector<DriverSensor*> unnamed;
    for (DriverSensor& sensor : sensors) {
        const std::optional<std::string> key =
            sensor.label ? keyFor(*sensor.label, keyByLabel) : std::nullopt;
        if (key && taken.insert(*key).second) {
            sensor.key = *key;
        } else {
            unnamed.push_back(&sensor);
        }
    }

    const auto nameOf = [](const DriverSensor& sensor) {
        return sensor.label.value_or("temp" + std::to_string(sensor.channel));
    };
    std::stable_sort(unnamed.begin(), unnamed.end(),
                     [&](const DriverSensor* a, const DriverSensor* b) { return nameOf(*a) < nameOf(*b); });
    for (DriverSensor* sensor : unnamed) {
        unsigned number = syntheticKeyNumber(nameOf(*sensor));
        while (!taken.insert(syntheticKey(number)).second && taken.size() < ownKeys) {
            number = (number + 1) % ownKeys;
        }
        sensor->key = syntheticKey(number);
    }
}

} // namespace Fenwhirl
