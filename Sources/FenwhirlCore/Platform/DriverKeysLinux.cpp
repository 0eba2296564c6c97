#include "FenwhirlCore/FourCC.h"
#include "FenwhirlCore/Platform/DriverKeys.h"
#include "FenwhirlCore/Platform/DriverSensorKeys.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace Fenwhirl {

namespace {

constexpr std::string_view classFolder = "/sys/class/hwmon";
constexpr int maxFanCount = 10; // a fan's number is a single digit of its keys

std::string firstLine(std::string text) {
    text.resize(std::min(text.find('\n'), text.size()));
    return text;
}

bool contains(const std::vector<std::string>& sortedNames, const std::string& name) {
    return std::binary_search(sortedNames.begin(), sortedNames.end(), name);
}

bool holdsChannels(const std::vector<std::string>& names) {
    return std::any_of(names.begin(), names.end(), [](const std::string& name) {
        return channelNumber(name, "fan", "_input") || channelNumber(name, "temp", "_input");
    });
}

FanControlStyle styleOf(const std::vector<std::string>& names, int channel) {
    const std::string fan = "fan" + std::to_string(channel);
    if (contains(names, fan + "_manual") && contains(names, fan + "_output")) {
        return FanControlStyle::manualAndOutput;
    }
    if (!contains(names, fan + "_target")) {
        return FanControlStyle::readOnly;
    }
    if (contains(names, fan + "_enable")) {
        return FanControlStyle::targetAndEnable;
    }
    if (contains(names, "pwm" + std::to_string(channel) + "_enable")) {
        return FanControlStyle::targetAndPwm;
    }
    return FanControlStyle::targetOnly;
}

std::string modeFile(FanControlStyle style, int channel) {
    const std::string number = std::to_string(channel);
    switch (style) {
    case FanControlStyle::manualAndOutput:
        return "fan" + number + "_manual";
    case FanControlStyle::targetAndEnable:
        return "fan" + number + "_enable";
    case FanControlStyle::targetAndPwm:
        return "pwm" + number + "_enable";
    case FanControlStyle::targetOnly:
    case FanControlStyle::readOnly:
        break;
    }
    return {};
}

// Whether a temperature key is one of the processor's. "TCHP" is the charge regulator's.
bool belongsToProcessor(std::string_view key) {
    return key.starts_with("Tp") || key.starts_with("Te") || key.starts_with("Tf") ||
           (key.starts_with("TC") && key != "TCHP");
}

class TableMaker {
public:
    TableMaker(DriverFiles& files, std::string driver, std::string folder, std::string device,
               std::vector<std::string> names)
        : files_(files)
        , driver_(std::move(driver))
        , device_(std::move(device))
        , names_(std::move(names)) {
        table_.folder = std::move(folder);
        table_.isIntelDriver = driver_ == "applesmc";
    }

    DriverKeyTable make() {
        addFans();
        addTemperatures();
        add("#KEY", "ui32", 4, DriverKey::Source::keyCount, 0, {});
        add("FNum", "ui8 ", 1, DriverKey::Source::fanCount, 0, {});
        std::sort(table_.keys.begin(), table_.keys.end(),
                  [](const DriverKey& a, const DriverKey& b) { return a.code < b.code; });
        table_.seesProcessor = std::any_of(table_.keys.begin(), table_.keys.end(),
                                           [](const DriverKey& key) { return belongsToProcessor(key.name); });
        return std::move(table_);
    }

private:
    void add(std::string name, std::string_view type, std::uint32_t size, DriverKey::Source source,
             int channel, std::string file) {
        const std::uint32_t code = fourCharacterCode(name);
        table_.keys.push_back({std::move(name), code, type, size, source, channel, std::move(file)});
    }

    void addSpeed(int channel, std::string_view suffix, const std::string& file, DriverKey::Source source) {
        if (!contains(names_, file)) {
            return;
        }
        const std::string name = "F" + std::to_string(channel - 1) + std::string(suffix);
        add(name, table_.isIntelDriver ? "fpe2" : "flt ", table_.isIntelDriver ? 2 : 4, source, channel,
            file);
    }

    void addFans() {
        int highest = 0;
        for (const std::string& name : names_) {
            highest = std::max(highest, channelNumber(name, "fan", "_input").value_or(0));
        }
        for (int channel = 1; channel <= std::min(highest, maxFanCount); ++channel) {
            const std::string fan = "fan" + std::to_string(channel);
            const FanControlStyle style = styleOf(names_, channel);
            table_.fans.push_back(style);
            addSpeed(channel, "Ac", fan + "_input", DriverKey::Source::fanSpeed);
            addSpeed(channel, "Mn", fan + "_min", DriverKey::Source::fanSpeed);
            addSpeed(channel, "Mx", fan + "_max", DriverKey::Source::fanSpeed);
            const std::string output = fan + "_output";
            addSpeed(channel, "Tg", contains(names_, output) ? output : fan + "_target",
                     DriverKey::Source::fanTarget);
            if (style != FanControlStyle::readOnly) {
                add("F" + std::to_string(channel - 1) + "Md", "ui8 ", 1, DriverKey::Source::fanMode, channel,
                    modeFile(style, channel));
            }
        }
    }

    void addTemperatures() {
        std::vector<DriverSensor> sensors;
        for (const std::string& name : names_) {
            const std::optional<int> channel = channelNumber(name, "temp", "_input");
            if (!channel) {
                continue;
            }
            const std::string label = "temp" + std::to_string(*channel) + "_label";
            std::optional<std::string> text;
            if (contains(names_, label)) {
                text = files_.readText(table_.folder + "/" + label);
            }
            sensors.push_back({*channel, text ? std::optional(firstLine(*text)) : std::nullopt, {}});
        }
        std::sort(sensors.begin(), sensors.end(),
                  [](const DriverSensor& a, const DriverSensor& b) { return a.channel < b.channel; });
        nameDriverSensors(files_, device_, sensors);
        for (const DriverSensor& sensor : sensors) {
            add(sensor.key, table_.isIntelDriver ? "sp78" : "flt ", table_.isIntelDriver ? 2 : 4,
                DriverKey::Source::temperature, 0, "temp" + std::to_string(sensor.channel) + "_input");
        }
    }

    DriverFiles& files_;
    std::string driver_;
    std::string device_; // the hwmon folder, from which the device tree can be reached
    std::vector<std::string> names_;
    DriverKeyTable table_{};
};

} // namespace

const DriverKey* DriverKeyTable::find(std::uint32_t code) const {
    const auto place =
        std::lower_bound(keys.begin(), keys.end(), code,
                         [](const DriverKey& key, std::uint32_t wanted) { return key.code < wanted; });
    return place != keys.end() && place->code == code ? &*place : nullptr;
}

std::optional<int> channelNumber(std::string_view name, std::string_view prefix, std::string_view suffix) {
    if (name.size() <= prefix.size() + suffix.size() || !name.starts_with(prefix) ||
        !name.ends_with(suffix)) {
        return std::nullopt;
    }
    const char* const first = name.data() + prefix.size();
    const char* const last = name.data() + name.size() - suffix.size();
    int number = 0;
    const auto [end, error] = std::from_chars(first, last, number);
    if (error != std::errc() || end != last || number < 0 || number > 9999) {
        return std::nullopt;
    }
    return number;
}

std::optional<DriverKeyTable> discoverDriverKeys(DriverFiles& files) {
    const std::string classes(classFolder);
    std::vector<int> numbers;
    for (const std::string& name : files.list(classes)) {
        if (const std::optional<int> number = channelNumber(name, "hwmon", "")) {
            numbers.push_back(*number);
        }
    }
    std::sort(numbers.begin(), numbers.end());

    for (const int number : numbers) {
        const std::string device = classes + "/hwmon" + std::to_string(number);
        std::optional<std::string> name = files.readText(device + "/name");
        if (!name) {
            name = files.readText(device + "/device/name");
        }
        constexpr std::array<std::string_view, 3> drivers = {"applesmc", "macsmc_hwmon", "t2smc"};
        if (!name || std::find(drivers.begin(), drivers.end(), firstLine(*name)) == drivers.end()) {
            continue;
        }
        // A driver may keep its attributes with the parent device instead of in the hwmon folder.
        for (const std::string& folder : {device, device + "/device"}) {
            std::vector<std::string> names = files.list(folder);
            if (holdsChannels(names)) {
                return TableMaker(files, firstLine(*name), folder, device, std::move(names)).make();
            }
        }
    }
    return std::nullopt;
}

} // namespace Fenwhirl
