#include "FenwhirlCore/Platform/DriverTrees.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace Fenwhirl {

namespace fs = std::filesystem;

DriverTree::DriverTree() {
    std::string pattern = (fs::temp_directory_path() / "fenwhirl-drivers-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    root_ = pattern;
    fs::create_directories(root_ / "run");
    write("proc/sys/kernel/random/boot_id", "11111111-2222-3333-4444-555555555555\n");
}

DriverTree::~DriverTree() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

void DriverTree::write(const std::string& path, std::string_view text, bool writable) const {
    const fs::path file = root_ / path;
    fs::create_directories(file.parent_path());
    if (fs::exists(file)) {
        fs::permissions(file, fs::perms(0644)); // an ordinary user could not overwrite a read-only file
    }
    std::ofstream(file, std::ios::binary) << text;
    fs::permissions(file, writable ? fs::perms(0644) : fs::perms(0444));
}

std::string DriverTree::read(const std::string& path) const {
    std::ifstream stream(root_ / path, std::ios::binary);
    std::string line;
    std::getline(stream, line);
    return line;
}

void DriverTree::remove(const std::string& path) const {
    fs::remove_all(root_ / path);
}

void DriverTree::link(const std::string& path, const std::string& target) const {
    const fs::path file = root_ / path;
    fs::create_directories(file.parent_path());
    fs::create_symlink(target, file);
}

void DriverTree::makeIntelLaptop() {
    device_ = "sys/devices/platform/applesmc.768";
    write("sys/class/dmi/id/product_name", "MacBookPro6,2\n");
    write("sys/class/hwmon/hwmon1/name", "coretemp\n");
    write("sys/class/hwmon/hwmon1/temp1_input", "52000\n");
    link("sys/class/hwmon/hwmon2", "../../devices/platform/applesmc.768/hwmon/hwmon2");
    link(device_ + "/hwmon/hwmon2/device", "../../../applesmc.768");
    write(device_ + "/name", "applesmc\n");
    write(device_ + "/key_count", "301\n");
    for (const auto& [fan, label, rpm] :
         {std::tuple{"1", "Left side  \n", "1981\n"}, {"2", "Right side \n", "2009\n"}}) {
        const std::string prefix = device_ + "/fan" + fan;
        write(prefix + "_label", label);
        write(prefix + "_input", rpm);
        write(prefix + "_min", "2000\n", true);
        write(prefix + "_max", "6000\n");
        write(prefix + "_output", "2000\n", true);
        write(prefix + "_manual", "0\n", true);
        fs::create_directories(root_ / (prefix + "_safe")); // cannot be read, like the driver's file
    }
    constexpr std::array<std::pair<std::string_view, int>, 18> sensors = {{
        {"TB0T", 34000},
        {"TB1T", 34000},
        {"TB2T", 31500},
        {"TC0C", 48500},
        {"TC0D", 51750},
        {"TC0P", 51000},
        {"TC1C", 53000},
        {"TG0D", 49500},
        {"TG0P", 49250},
        {"TG0T", 51750},
        {"TMCD", 53000},
        {"TP0P", 57750},
        {"TPCD", 66000},
        {"Th1H", 46500},
        {"Th2H", 45750},
        {"Tm0P", 49500},
        {"Ts0P", 30000},
        {"Ts0S", 40000},
    }};
    int channel = 0;
    for (const auto& [key, milliCelsius] : sensors) {
        sensor(++channel, key, milliCelsius, {});
    }
}

void DriverTree::makeT2Desktop() {
    device_ = "sys/devices/LNXSYSTM:00/LNXSYBUS:00/PNP0A08:00/device:1c/APP0001:00";
    link("sys/class/hwmon/hwmon4", "../../../" + device_ + "/hwmon/hwmon4");
    link(device_ + "/hwmon/hwmon4/device", "../../../APP0001:00");
    write(device_ + "/name", "applesmc\n");
    fs::create_directories(root_ / (device_ + "/fan1_label"));
    write(device_ + "/fan1_input", "2530\n");
    write(device_ + "/fan1_min", "1700\n", true);
    write(device_ + "/fan1_max", "4922\n");
    write(device_ + "/fan1_manual", "0\n", true);
    write(device_ + "/fan1_output", "2500\n", true);
    constexpr std::array<std::pair<std::string_view, int>, 8> sensors = {{
        {"TC0F", 84000},
        {"TC0P", 56750},
        {"TC1C", 69000},
        {"TCXC", 69500},
        {"TH0a", 51750},
        {"TM0P", 56250},
        {"TaLC", 54000},
        {"TaRC", 60000},
    }};
    int channel = 0;
    for (const auto& [key, milliCelsius] : sensors) {
        sensor(++channel, key, milliCelsius, {});
    }
}

void DriverTree::makeAppleSiliconLaptop() {
    device_ = "sys/devices/platform/soc/290400000.smc/macsmc-hwmon/hwmon/hwmon3";
    deviceTree_ = "sys/firmware/devicetree/base/soc/smc@290400000/hwmon";
    write("sys/firmware/devicetree/base/model",
          std::string_view("Apple MacBook Pro (14-inch, M1 Pro, 2021)\0", 42));
    write("sys/class/hwmon/hwmon0/name", "nvme\n");
    write("sys/class/hwmon/hwmon0/fan1_target", "5\n");
    link("sys/class/hwmon/hwmon3", "../../devices/platform/soc/290400000.smc/macsmc-hwmon/hwmon/hwmon3");
    link(device_ + "/device", "../../../macsmc-hwmon");
    link(device_ + "/of_node", "../../../../../../../firmware/devicetree/base/soc/smc@290400000/hwmon");
    write(device_ + "/name", "macsmc_hwmon\n");
    for (const auto& [fan, rpm, target] : {std::tuple{"1", "0\n", "0\n"}, {"2", "1203\n", "1199\n"}}) {
        const std::string prefix = device_ + "/fan" + fan;
        write(prefix + "_label", std::string("Fan ") + fan + "\n");
        write(prefix + "_input", rpm);
        write(prefix + "_min", "1199\n");
        write(prefix + "_max", "7199\n");
        write(prefix + "_target", target, true);
    }
    sensor(1, "NAND Flash Temperature", 44864, "TH0x");
    sensor(2, "Battery Hotspot", 31200, "TB0T");
    sensor(3, "Charge Regulator Temp", 46093, "TCHP");
    sensor(4, "WiFi/BT Module Temp", 39500, "TW0P");
    write(device_ + "/power1_label", "Total System Power\n");
    write(device_ + "/power1_input", "16615781\n");
    write(device_ + "/in0_label", "Charger Input Voltage\n");
    write(device_ + "/in0_input", "0\n");
}

void DriverTree::addProcessorSensors() {
    sensor(5, "SoC Die Temp", 51230, "TSCD");
    sensor(6, "Efficiency Core 1 Temp", 47812, "Tp09");
    sensor(7, "Performance Core 1 Temp", 58046, "Tp01");
    sensor(8, "GPU 1 Temp", 49500, "Tg05");
    sensor(9, "DRAM 1 Temp", 44000, "Tm02");
}

void DriverTree::allowFanControl() {
    write("etc/fenwhirl/allow-fan-control", "");
}

void DriverTree::sensor(int channel, std::string_view label, int milliCelsius, std::string_view key) const {
    const std::string prefix = device_ + "/temp" + std::to_string(channel);
    write(prefix + "_label", std::string(label) + "\n");
    write(prefix + "_input", std::to_string(milliCelsius) + "\n");
    if (!key.empty()) {
        const std::string node = deviceTree_ + "/temperature-" + std::string(key);
        write(node + "/apple,key-id", std::string(key) + '\0');
        write(node + "/label", std::string(label) + '\0');
    }
}

} // namespace Fenwhirl
