// Fuzzes the driver transport: a Mac's driver whose files contain anything and fail at any moment.
//
// Input: lines "NAME TEXT", each a file in the driver's folder ("of_node/…" for the device tree below it,
// "@PATH TEXT" for a file elsewhere), then an empty line, then bytes: one for each operation, and one for
// each file access, which decides whether and how the access fails.
//
// Invariants: Only the files that control a fan are written, each with a whole number. No fan is stopped, and
// none is driven while no temperature can be the processor's. Keys are sorted and unique. Every descriptor is
// closed, and only the remembered state of a fan is stored.

#include "FenwhirlCore/Platform/DriverTransport.h"
#include "FenwhirlCore/SMC.h"
#include "FuzzInput.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <set>
#include <utility>

namespace Fenwhirl {

namespace {

using std::chrono::milliseconds;

const std::string device = "/sys/class/hwmon/hwmon0";
const std::string memory = "/run/fenwhirl";

bool isNumbered(std::string_view name, std::string_view prefix, std::string_view suffix) {
    if (!name.starts_with(prefix) || !name.ends_with(suffix) ||
        name.size() <= prefix.size() + suffix.size()) {
        return false;
    }
    name = name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
    return name.find_first_not_of("0123456789") == std::string_view::npos;
}

// The test's own state, which remains accessible while the transport owns the files.
struct Computer {
    std::map<std::string, std::string> files;
    std::set<int> open;
    std::map<int, std::string> paths;
    int lastDescriptor = 2;
    bool isDriven = false; // whether anything was written
    bool mayDrive = true;
    milliseconds now{0};
    milliseconds slept{0};
};

class HostileFiles final : public DriverFiles {
public:
    HostileFiles(Computer& computer, FuzzInput& input) : computer_(computer), input_(input) {}

    std::vector<std::string> list(const std::string& folder) override {
        std::set<std::string> names;
        for (const auto& [path, text] : computer_.files) {
            if (path.starts_with(folder + "/")) {
                names.insert(
                    path.substr(folder.size() + 1, path.find('/', folder.size() + 1) - folder.size() - 1));
            }
        }
        return {names.begin(), names.end()};
    }

    std::optional<Status> status(const std::string& path) override {
        if (!computer_.files.contains(path)) {
            return std::nullopt;
        }
        const std::uint8_t control = input_.byte();
        return Status{(control & 1U) == 0, (control & 2U) == 0, (control & 4U) == 0 ? 0U : 1000U};
    }

    int open(const std::string& path, Access access) override {
        fuzzExpect(access == Access::read || steersAFan(path),
                   "only files that steer a fan are opened to write");
        if (!computer_.files.contains(path)) {
            return -ENOENT;
        }
        if (const int error = failure(); error != 0) {
            return -error;
        }
        computer_.open.insert(++computer_.lastDescriptor);
        computer_.paths[computer_.lastDescriptor] = path;
        return computer_.lastDescriptor;
    }

    ssize_t readAt0(int descriptor, std::span<char> buffer) override {
        fuzzExpect(computer_.open.contains(descriptor), "only open files are read");
        if (const int error = failure(); error != 0) {
            return -error;
        }
        const std::string& text = computer_.files[computer_.paths[descriptor]];
        const std::size_t count = std::min(text.size(), buffer.size());
        std::copy_n(text.begin(), count, buffer.begin());
        return static_cast<ssize_t>(count);
    }

    ssize_t writeAt0(int descriptor, std::string_view text) override {
        fuzzExpect(computer_.open.contains(descriptor), "only open files are written");
        const std::string& path = computer_.paths[descriptor];
        fuzzExpect(steersAFan(path), "only files that steer a fan are written");
        fuzzExpect(text.size() >= 2 && text.ends_with('\n') &&
                       text.find_first_not_of("0123456789") == text.size() - 1,
                   "what is written is a whole number and the end of its line");
        fuzzExpect(!path.ends_with("_output") || text != "0\n", "no fan is stopped");
        computer_.isDriven = true;
        if (const int error = failure(); error != 0) {
            return -error;
        }
        computer_.files[path] = text;
        return static_cast<ssize_t>(text.size()) - (input_.byte() == 1 ? 1 : 0);
    }

    void close(int descriptor) override {
        fuzzExpect(computer_.open.erase(descriptor) == 1, "a descriptor is closed once");
    }

    bool store(const std::string& folder, const std::string& name, std::string_view text) override {
        fuzzExpect(folder == memory && isNumbered(name, "fan", ""), "only what concerns a fan is remembered");
        if (failure() != 0) {
            return false;
        }
        computer_.files[folder + "/" + name] = text;
        return true;
    }

    void remove(const std::string& path) override {
        fuzzExpect(isNumbered(path, memory + "/fan", ""), "only what concerns a fan is forgotten");
        computer_.files.erase(path);
    }

    milliseconds now() override { return computer_.now; }

    milliseconds sleepOffset() override { return computer_.slept; }

private:
    static bool steersAFan(std::string_view path) {
        const std::string_view name = path.substr(path.rfind('/') + 1);
        return path.starts_with(device) &&
               (isNumbered(name, "fan", "_manual") || isNumbered(name, "fan", "_output") ||
                isNumbered(name, "fan", "_target") || isNumbered(name, "fan", "_enable") ||
                isNumbered(name, "pwm", "_enable"));
    }

    int failure() {
        constexpr std::array errors = {EIO, ENODEV, EACCES, ETIMEDOUT, EINVAL, ENOENT, EOPNOTSUPP};
        const std::uint8_t control = input_.byte();
        return control >= 200 ? errors[control % errors.size()] : 0;
    }

    Computer& computer_;
    FuzzInput& input_;
};

// Reads the files from the first part of the input.
void takeFiles(FuzzInput& input, Computer& computer) {
    while (!input.isEmpty()) {
        std::string line;
        for (char character = 0; !input.isEmpty() && (character = static_cast<char>(input.byte())) != '\n';) {
            line += character;
        }
        if (line.empty()) {
            return;
        }
        const std::size_t blank = std::min(line.find(' '), line.size());
        const std::string name = line.substr(0, blank);
        const std::string text = line.substr(std::min(blank + 1, line.size())) + "\n";
        computer.files[name.starts_with('@') ? name.substr(1) : device + "/" + name] = text;
    }
}

// Whether some file could identify a temperature as the processor's, or root has allowed driving without one.
bool mayBeDriven(const Computer& computer) {
    return std::ranges::any_of(computer.files, [](const auto& file) {
        const auto& [path, text] = file;
        const bool isHint = text.find("Tp") != std::string::npos || text.find("Te") != std::string::npos ||
                            text.find("Tf") != std::string::npos || text.find("TC") != std::string::npos;
        return isHint || path == "/etc/fenwhirl/allow-fan-control";
    });
}

void checkKeys(SMC& smc) {
    const auto keys = smc.allKeys();
    fuzzExpect(smc.readValue("#KEY") == static_cast<double>(keys.size()), "every key is counted");
    fuzzExpect(std::ranges::is_sorted(keys), "keys are in order");
    fuzzExpect(std::ranges::adjacent_find(keys) == keys.end(), "no key is there twice");
    for (const std::string& key : keys) {
        fuzzExpect(key.size() == 4, "a key has four characters");
        static_cast<void>(smc.describe(key));
    }
}

void operate(SMC& smc, Computer& computer, FuzzInput& input) {
    const std::uint8_t operation = input.byte();
    const std::int64_t fan = operation / 8 % 11;
    switch (operation % 8) {
    case 0:
    case 1:
        computer.isDriven = false;
        static_cast<void>(smc.setFanSpeed(fan, static_cast<double>(input.integer<std::uint16_t>()) / 4));
        fuzzExpect(computer.mayDrive || !computer.isDriven, "no fan is driven without seeing the processor");
        return;
    case 2:
        static_cast<void>(smc.resetFan(fan));
        return;
    case 3:
        fuzzExpect(smc.readFans().size() <= 10, "a driver has ten fans at most");
        return;
    case 4:
        for (const auto& reading : smc.readTemperatures(smc.discoverTemperatureKeys())) {
            fuzzExpect(reading.celsius > 0 && reading.celsius < 130, "readings are plausible");
        }
        return;
    case 5:
        checkKeys(smc);
        return;
    case 6:
        computer.now += milliseconds(100 * input.byte());
        return;
    default:
        computer.slept += milliseconds(100 * input.byte());
        return;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    Computer computer;
    takeFiles(input, computer);
    computer.mayDrive = mayBeDriven(computer);
    {
        auto transport = openDriverTransport(std::make_unique<HostileFiles>(computer, input));
        if (transport) {
            SMC smc(std::move(transport));
            for (int step = 0; step < 16 && !input.isEmpty(); ++step) {
                operate(smc, computer, input);
            }
        }
    }
    fuzzExpect(computer.open.empty(), "every descriptor is closed in the end");
    return 0;
}

} // namespace Fenwhirl
