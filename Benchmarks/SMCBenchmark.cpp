// What the core costs beyond the round trips that it cannot avoid.
//
// Every benchmark runs its subject alternately with the same number of bare round trips, which only send and
// receive the same records on the same kind of socket, so that both see the machine in the same state. The
// counters are the medians of both and their ratio, in wall-clock time and in processor time of this process.

#include "Course.h"
#include "FenwhirlCore/Platform/SocketTransport.h"
#include "FenwhirlCore/SMC.h"
#include "SMCService.h"

#include <benchmark/benchmark.h>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// The floor: round trips and nothing else.
class BareConnection {
public:
    explicit BareConnection(const std::string& path) : socket_(socket(AF_UNIX, SOCK_SEQPACKET, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof(address.sun_path) - 1);
        if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
            std::abort();
        }
    }

    ~BareConnection() { close(socket_); }

    BareConnection(const BareConnection&) = delete;
    BareConnection& operator=(const BareConnection&) = delete;

    void roundTrips(std::size_t count) const {
        SMCParam request{};
        request.key = SMC::fourCC("TC0P");
        request.data8 = SMCCommand::keyInfo;
        std::array<char, 84> reply{};
        for (std::size_t i = 0; i < count; ++i) {
            send(socket_, &request, sizeof(request), MSG_NOSIGNAL);
            benchmark::DoNotOptimize(recv(socket_, reply.data(), reply.size(), 0));
        }
    }

private:
    int socket_;
};

constexpr double allowedRatio = 1.15;

// What the subject's cost grows with: "sensors", and how many.
struct Grows {
    std::string things;
    int number;
};

template <typename Subject>
void compare(benchmark::State& state, const std::string& what, const std::string& path,
             std::size_t roundTrips, const Subject& subject, const std::optional<Grows>& grows = {}) {
    const BareConnection bare(path);
    Course subjectCourse;
    Course bareCourse;
    for (auto _ : state) {
        bareCourse.run([&] { bare.roundTrips(roundTrips); });
        state.SetIterationTime(subjectCourse.run(subject));
    }
    report(state, what, allowedRatio, subjectCourse, bareCourse);
    state.counters["trips"] = static_cast<double>(roundTrips);
    if (grows) {
        curves.point(grows->things, grows->number, subjectCourse.wall() * 1e3, bareCourse.wall() * 1e3);
    }
}

std::vector<std::string> sensorKeys(int count) {
    std::vector<std::string> keys;
    for (int number = 0; number < count; ++number) {
        keys.push_back(sensorKey(number));
    }
    return keys;
}

// Two fans and 60 sensors, which the application reads every two seconds: 136 round trips for the values, and
// two for the number of fans.
void poll(benchmark::State& state) {
    const SMCService service(60);
    SMC smc(SocketTransport::open(service.path()));
    const auto keys = sensorKeys(60);
    compare(state, "a poll of 60 sensors", service.path(), 2 + 2 * 4 * 2 + 60 * 2, [&] {
        if (smc.readFans().size() != 2 || smc.readTemperatures(keys).size() != 60) {
            std::abort();
        }
    });
}

BENCHMARK(poll)->UseManualTime()->Unit(benchmark::kMicrosecond);

void discovery(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const SMCService service(count);
    SMC smc(SocketTransport::open(service.path()));
    const std::string what = "the discovery of " + std::to_string(count) + " sensors";
    compare(state, what, service.path(), 2 + 3 * static_cast<std::size_t>(count), [&] {
        if (smc.discoverTemperatureKeys().size() != static_cast<std::size_t>(count)) {
            std::abort();
        }
    });
}

BENCHMARK(discovery)->Arg(60)->Arg(700)->Arg(2000)->UseManualTime()->Unit(benchmark::kMicrosecond);

void temperatures(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const SMCService service(count);
    SMC smc(SocketTransport::open(service.path()));
    const auto keys = sensorKeys(count);
    const std::string what = "a reading of " + std::to_string(count) + " sensors";
    compare(
        state, what, service.path(), 2 * keys.size(),
        [&] {
            if (smc.readTemperatures(keys).size() != keys.size()) {
                std::abort();
            }
        },
        Grows{.things = "sensors", .number = count});
    state.counters["us_per_sensor"] = state.counters["ours_us"].value / static_cast<double>(count);
}

BENCHMARK(temperatures)
    ->RangeMultiplier(10)
    ->Range(1, 1000)
    ->Arg(500)
    ->Arg(2000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

void fans(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const SMCService service(1, count);
    SMC smc(SocketTransport::open(service.path()));
    const std::string what = "a reading of " + std::to_string(count) + " fans";
    compare(
        state, what, service.path(), 2 + 8 * static_cast<std::size_t>(count),
        [&] {
            if (smc.readFans().size() != static_cast<std::size_t>(count)) {
                std::abort();
            }
        },
        Grows{.things = "fans", .number = count});
}

BENCHMARK(fans)->Arg(1)->Arg(2)->Arg(8)->Arg(30)->Arg(100)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace Fenwhirl

int main(int argc, char** argv) {
    return Fenwhirl::runBenchmarks(argc, argv);
}
