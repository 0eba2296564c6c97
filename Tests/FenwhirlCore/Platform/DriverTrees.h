// File trees that look like those of the kernel's drivers on real Macs, built in a temporary folder.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace Fenwhirl {

class DriverTree {
public:
    DriverTree();
    DriverTree(const DriverTree&) = delete;
    DriverTree& operator=(const DriverTree&) = delete;
    ~DriverTree();

    // A MacBookPro6,2 with the driver applesmc: two fans and 18 temperatures.
    void makeIntelLaptop();
    // A Macmini8,1 with the driver for T2 machines: one fan, attributes in the folder of an ACPI device.
    void makeT2Desktop();
    // A 14-inch MacBook Pro (M1 Pro) with the driver macsmc_hwmon, as its stock device tree describes it: two
    // fans and four temperatures, none of them the processor's.
    void makeAppleSiliconLaptop();
    // Adds the sensors of a development device tree, which include the processor's.
    void addProcessorSensors();
    // Allows fans to be controlled although no processor temperature is visible.
    void allowFanControl();

    void write(const std::string& path, std::string_view text, bool writable = false) const;
    [[nodiscard]] std::string read(const std::string& path) const; // its first line
    void remove(const std::string& path) const;
    void link(const std::string& path, const std::string& target) const;

    [[nodiscard]] std::string root() const { return root_.string(); }

    // The folder with the driver's attributes.
    [[nodiscard]] const std::string& device() const { return device_; }

private:
    void sensor(int channel, std::string_view label, int milliCelsius, std::string_view key) const;

    std::filesystem::path root_;
    std::string device_;
    std::string deviceTree_;
};

} // namespace Fenwhirl
