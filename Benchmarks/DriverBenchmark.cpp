// What a poll through the kernel's drivers costs beyond the reads that it cannot avoid. It reads 60
// temperatures and two fans, and is compared with as many bare reads of the same files on descriptors that
// stay open.
//
// The files are ordinary ones, which cost less to read than a driver's files, so the ratio is worse than on a
// Mac.

#include "Course.h"
#include "FenwhirlCore/Platform/DriverTransport.h"
#include "FenwhirlCore/Platform/DriverTrees.h"
#include "FenwhirlCore/SMC.h"

#include <array>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

constexpr int sensorCount = 60;

// Adds sensors with made-up names to the laptop of the tree until there are 60.
void makeMachine(const DriverTree& tree) {
    constexpr int sensorsOfTheLaptop = 18;
    for (int channel = sensorsOfTheLaptop + 1; channel <= sensorCount; ++channel) {
        const std::string attribute = tree.device() + "/temp" + std::to_string(channel);
        tree.write(attribute + "_label", "TZ" + std::to_string(channel) + "\n");
        tree.write(attribute + "_input", "48250\n");
    }
}

// The floor: the files that a poll reads, opened once.
class BareFiles {
public:
    explicit BareFiles(const DriverTree& tree) {
        const std::string device = tree.root() + "/" + tree.device();
        for (int channel = 1; channel <= sensorCount; ++channel) {
            open(device + "/temp" + std::to_string(channel) + "_input");
        }
        for (const char* fan : {"/fan1", "/fan2"}) {
            for (const char* attribute : {"_input", "_min", "_max", "_output"}) {
                open(device + fan + attribute);
            }
        }
    }

    ~BareFiles() {
        for (const int descriptor : descriptors_) {
            close(descriptor);
        }
    }

    BareFiles(const BareFiles&) = delete;
    BareFiles& operator=(const BareFiles&) = delete;

    void read() const {
        std::array<char, 64> buffer{};
        for (const int descriptor : descriptors_) {
            benchmark::DoNotOptimize(pread(descriptor, buffer.data(), buffer.size(), 0));
        }
    }

private:
    void open(const std::string& path) {
        descriptors_.push_back(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
        if (descriptors_.back() < 0) {
            std::abort();
        }
    }

    std::vector<int> descriptors_;
};

void driverPoll(benchmark::State& state) {
    DriverTree tree;
    tree.makeIntelLaptop();
    makeMachine(tree);
    SMC smc(openDriverTransport(systemDriverFiles(tree.root())));
    const std::vector<std::string> keys = smc.discoverTemperatureKeys();
    if (keys.size() != sensorCount) {
        std::abort();
    }
    const BareFiles bare(tree);
    Course subjectCourse;
    Course bareCourse;
    for (auto _ : state) {
        bareCourse.run([&] { bare.read(); });
        state.SetIterationTime(subjectCourse.run([&] {
            if (smc.readFans().size() != 2 || smc.readTemperatures(keys).size() != sensorCount) {
                std::abort();
            }
        }));
    }
    report(state, "a poll through drivers", 1.4, subjectCourse, bareCourse);
}

BENCHMARK(driverPoll)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace Fenwhirl

int main(int argc, char** argv) {
    return Fenwhirl::runBenchmarks(argc, argv);
}
