// A fake driver of a Mac, in memory. It does what ordinary files cannot imitate: it has a state of its own,
// the computer sleeps, the controller does not answer, and the device disappears and comes back.
//
// The test may change the Mac between calls. The Mac must outlive the files and the connection.

#pragma once

#include "FenwhirlCore/Platform/DriverTransport.h"
#include "FenwhirlCore/SMC.h"

#include <algorithm>
#include <cerrno>
#include <map>

namespace Fenwhirl {

// An Apple Silicon Mac with one fan. Like its driver, it sets the controller's mode for a target within the
// limits only when it does not already believe the fan manual, and clears the mode for 0 only when it does.
class FakeMac {
public:
    std::map<std::string, std::string> files;
    std::vector<std::string> targetsWritten;
    bool controllerIsManual = false;
    bool driverBelievesManual = false;
    int readError = 0;                  // errno for every measured value, unless 0
    int reads = 0;                      // number of measured values read
    std::map<std::string, int> failing; // file → errno of reading it
    std::map<std::string, int> barred;  // file → errno of opening it
    int opened = 0;
    int closed = 0;
    std::chrono::milliseconds now{0};
    std::chrono::milliseconds slept{0};

    FakeMac() { plugIn(); }

    void plugIn(const std::string& number = "3") {
        const std::string device = "/sys/class/hwmon/hwmon" + number + "/";
        files[device + "name"] = "macsmc_hwmon\n";
        files[device + "fan1_input"] = "1300\n";
        files[device + "fan1_min"] = "1199\n";
        files[device + "fan1_max"] = "7199\n";
        files[device + "fan1_target"] = "1199\n";
        files[device + "temp1_label"] = "Tp01\n";
        files[device + "temp1_input"] = "55000\n";
        files["/proc/sys/kernel/random/boot_id"] = "boot\n";
    }

    void unplug() {
        std::erase_if(files, [](const auto& file) { return file.first.starts_with("/sys/"); });
    }

    void sleepAndWake() {
        slept += std::chrono::milliseconds(60'000);
        controllerIsManual = false;
    }

    void reloadDriver() { driverBelievesManual = false; }

    int writeTarget(const std::string& path, std::string_view text) {
        const int value = std::stoi(std::string(text));
        targetsWritten.push_back(std::to_string(value));
        if (value == 0) {
            if (driverBelievesManual) {
                controllerIsManual = driverBelievesManual = false;
            }
            return 0;
        }
        if (value < 1199 || value > 7199) {
            return EINVAL;
        }
        if (!driverBelievesManual) {
            controllerIsManual = driverBelievesManual = true;
        }
        files[path] = std::to_string(value) + "\n";
        return 0;
    }
};

class FakeDriverFiles final : public DriverFiles {
public:
    explicit FakeDriverFiles(FakeMac& mac) : mac_(mac) {}

    std::vector<std::string> list(const std::string& folder) override {
        std::vector<std::string> names;
        for (const auto& [path, text] : mac_.files) {
            if (!path.starts_with(folder + "/")) {
                continue;
            }
            std::string name = path.substr(folder.size() + 1);
            name.resize(std::min(name.find('/'), name.size()));
            if (names.empty() || names.back() != name) {
                names.push_back(name);
            }
        }
        return names;
    }

    std::optional<Status> status(const std::string& path) override {
        if (!mac_.files.contains(path)) {
            return std::nullopt;
        }
        return Status{true, path.ends_with("_target"), 0};
    }

    int open(const std::string& path, Access /*access*/) override {
        if (!mac_.files.contains(path)) {
            return -ENOENT;
        }
        if (const auto error = mac_.barred.find(path); error != mac_.barred.end()) {
            return -error->second;
        }
        ++mac_.opened;
        opened_.push_back(path);
        return static_cast<int>(opened_.size()) + 2;
    }

    ssize_t readAt0(int descriptor, std::span<char> buffer) override {
        const std::string& path = opened_[static_cast<std::size_t>(descriptor) - 3];
        if (!mac_.files.contains(path)) {
            return -ENODEV;
        }
        if (const auto error = mac_.failing.find(path); error != mac_.failing.end()) {
            return -error->second;
        }
        if (path.ends_with("_input")) {
            ++mac_.reads;
            if (mac_.readError != 0) {
                return -mac_.readError;
            }
        }
        const std::string& text = mac_.files[path];
        std::copy(text.begin(), text.end(), buffer.begin());
        return static_cast<ssize_t>(text.size());
    }

    ssize_t writeAt0(int descriptor, std::string_view text) override {
        const std::string& path = opened_[static_cast<std::size_t>(descriptor) - 3];
        const int error = mac_.writeTarget(path, text);
        return error != 0 ? -error : static_cast<ssize_t>(text.size());
    }

    void close(int /*descriptor*/) override { ++mac_.closed; }

    bool store(const std::string& folder, const std::string& name, std::string_view text) override {
        mac_.files[folder + "/" + name] = text;
        return true;
    }

    void remove(const std::string& path) override { mac_.files.erase(path); }

    std::chrono::milliseconds now() override { return mac_.now; }

    std::chrono::milliseconds sleepOffset() override { return mac_.slept; }

private:
    FakeMac& mac_;
    std::vector<std::string> opened_;
};

[[nodiscard]] inline SMC openFakeDriver(FakeMac& mac) {
    return SMC(openDriverTransport(std::make_unique<FakeDriverFiles>(mac)));
}

} // namespace Fenwhirl
