// File trees as the kernel's drivers show them on real Macs, built in a temporary folder.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

class DriverTree {
public:
    DriverTree();
    DriverTree(const DriverTree&) = delete;
    DriverTree& operator=(const DriverTree&) = delete;
    ~DriverTree();

    // A MacBookPro6,2 with the driver applesmc: two fans and 18 temperatures.
    void makeIntelLaptop();
    // A Macmini8,1 with the driver that T2 machines use: one fan, attributes on an ACPI device.
    void makeT2Desktop();
    // A 14-inch MacBook Pro with M1 Pro and the driver macsmc_hwmon, as its stock device tree describes it:
    // two fans, four temperatures, none of the processor.
    void makeAppleSiliconLaptop();
    // The same with the sensors of a development device tree, the processor's among them.
    void addProcessorSensors();
    // Lets fans be controlled although no processor temperature is seen.
    void allowFanControl();

    void write(const std::string& path, std::string_view text, bool writable = false) const;
    [[nodiscard]] std::string read(const std::string& path) const; // the first line
    void remove(const std::string& path) const;
    void link(const std::string& path, const std::string& target) const;

    [[nodiscard]] std::string root() const { return root_.string(); }

    // The folder of the attributes.
    [[nodiscard]] const std::string& device() const { return device_; }

private:
    void sensor(int channel, std::string_view label, int milliCelsius, std::string_view key) const;

    std::filesystem::path root_;
    std::string device_;
    std::string deviceTree_;
};
