// What preferences cost: loading them at the start, and saving one change of a fan, on the disk and in memory
// (/dev/shm). The difference between the two is the cost of the disk.

#include "Fenwhirl/Monitoring/FanSettingsJSON.h"
#include "Fenwhirl/Monitoring/SavedPreferences.h"
#include "Fenwhirl/Platform/Preferences/FilePreferencesLinux.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace Fenwhirl {

namespace {

FanSettings settingsOf(int fans) {
    FanSettings settings;
    for (int index = 0; index < fans; ++index) {
        settings[index] = {FanModeKind::sensor, 3000, "TC0P", 50, 90};
    }
    return settings;
}

// A folder for one benchmark, on the disk or in memory.
class Place {
public:
    explicit Place(const char* parent) : folder_(std::string(parent) + "/fenwhirl-benchmark-XXXXXX") {
        if (mkdtemp(folder_.data()) == nullptr) {
            std::abort();
        }
    }

    ~Place() { std::filesystem::remove_all(folder_); }

    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    [[nodiscard]] std::string file() const { return folder_ + "/preferences.json"; }

private:
    std::string folder_;
};

void save(benchmark::State& state, const char* parent) {
    const Place place(parent);
    FilePreferences store(place.file());
    FanSettings settings = settingsOf(static_cast<int>(state.range(0)));
    for (auto step : state) {
        static_cast<void>(step);
        settings[0].constantRPM += 50; // as when a slider is dragged
        save(store, Preferences::of<&SavedPreferences::settings>(), settings);
    }
}

void saveOnDisk(benchmark::State& state) {
    save(state, std::filesystem::temp_directory_path().c_str());
}

void saveInMemory(benchmark::State& state) {
    save(state, "/dev/shm");
}

void load(benchmark::State& state) {
    const Place place("/dev/shm");
    {
        FilePreferences store(place.file());
        save(store, Preferences::of<&SavedPreferences::settings>(),
             settingsOf(static_cast<int>(state.range(0))));
        save(store, Preferences::of<&SavedPreferences::theme>(), AppTheme::light);
    }
    for (auto step : state) {
        static_cast<void>(step);
        FilePreferences store(place.file());
        benchmark::DoNotOptimize(SavedPreferences::load(store));
    }
}

void encode(benchmark::State& state) {
    const FanSettings settings = settingsOf(static_cast<int>(state.range(0)));
    for (auto step : state) {
        static_cast<void>(step);
        benchmark::DoNotOptimize(encodeFanSettings(settings));
    }
}

} // namespace

BENCHMARK(load)->Arg(2)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(saveInMemory)->Arg(2)->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(saveOnDisk)->Arg(2)->Unit(benchmark::kMicrosecond);
BENCHMARK(encode)->Arg(2)->Arg(100)->Unit(benchmark::kMicrosecond);

} // namespace Fenwhirl
