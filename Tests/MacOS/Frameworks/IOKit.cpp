#include "Frameworks/IOKit.h"

#include "FenwhirlCore/SMCRecord.h"
#include "SimulatedMac/Commands.h"
#include "SimulatedMac/Mac.h"
#include "SimulatedMac/MachineTable.h"

#include <IOKit/IOKitLib.h>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <set>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

struct __CFDictionary { // NOLINT: the declared name
    std::string service;
};

extern const mach_port_t kIOMainPortDefault = 0;

namespace {

constexpr std::uint32_t badArgument = 0xE00002C2U;
constexpr std::uint32_t notFound = 0xE00002F0U;
constexpr io_service_t appleSMC = 4711;
constexpr io_connect_t firstConnection = 9000;

struct Wire {
    std::mutex mutex;
    int client = -1; // our end of the simulated Mac's socket
    std::set<io_connect_t> open;
    io_connect_t next = firstConnection;
};

Wire& wire() {
    static Wire instance;
    return instance;
}

simulated::Instant now() {
    const std::chrono::duration<double> steady = std::chrono::steady_clock::now().time_since_epoch();
    const std::chrono::duration<double> wall = std::chrono::system_clock::now().time_since_epoch();
    return {.steadySeconds = steady.count(), .wallSeconds = wall.count()};
}

} // namespace

FakeMac::Kernel& FakeMac::kernel() {
    static Kernel instance;
    return instance;
}

struct FakeMac::Controller::State {
    explicit State(std::string_view machine) : mac(*simulated::findMachine(machine), now()) {
        if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
            std::abort();
        }
        wire().client = ends[0];
        server = std::thread([this] { serve(); });
    }

    ~State() {
        wire().client = -1;
        close(ends[0]); // lets the thread's recv() return
        server.join();
        close(ends[1]);
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void serve() {
        Fenwhirl::SMCParam request{};
        while (recv(ends[1], &request, sizeof request, 0) == static_cast<ssize_t>(sizeof request)) {
            simulated::Reply reply;
            {
                const std::lock_guard lock(mutex);
                const simulated::Peer peer{.process = 1, .user = kernel().isRoot ? 0U : 501U};
                reply = mac.handle(request, peer, now());
            }
            if (send(ends[1], &reply, sizeof reply, MSG_NOSIGNAL) != static_cast<ssize_t>(sizeof reply)) {
                return;
            }
        }
    }

    std::mutex mutex;
    simulated::Mac mac;
    simulated::AnswerFaults faults;
    simulated::ServerCounters counters;
    int ends[2] = {-1, -1};
    std::thread server;
};

FakeMac::Controller::Controller(std::string_view machine) : state_(std::make_unique<State>(machine)) {}

FakeMac::Controller::~Controller() = default;

std::string FakeMac::Controller::command(std::string_view line) {
    const std::lock_guard lock(state_->mutex);
    simulated::CommandContext context{state_->mac, state_->faults, state_->counters};
    return simulated::runCommand(context, line, now()).answer;
}

extern "C" {

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    ++FakeMac::kernel().matchingDictionaries;
    return new __CFDictionary{name};
}

io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching) {
    if (matching == nullptr || mainPort != kIOMainPortDefault) {
        return 0;
    }
    const bool matches = matching->service == "AppleSMC";
    delete matching; // the call consumes the dictionary
    --FakeMac::kernel().matchingDictionaries;
    if (!matches || !FakeMac::kernel().hasService) {
        return 0;
    }
    ++FakeMac::kernel().services;
    return appleSMC;
}

kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, std::uint32_t type,
                            io_connect_t* connect) {
    if (service != appleSMC || FakeMac::kernel().services == 0 || owningTask != mach_task_self() ||
        type != 0) {
        return static_cast<kern_return_t>(badArgument);
    }
    if (!FakeMac::kernel().opens) {
        return static_cast<kern_return_t>(notFound);
    }
    const std::lock_guard lock(wire().mutex);
    *connect = wire().next++;
    wire().open.insert(*connect);
    ++FakeMac::kernel().openConnections;
    return KERN_SUCCESS;
}

kern_return_t IOServiceClose(io_connect_t connect) {
    const std::lock_guard lock(wire().mutex);
    if (wire().open.erase(connect) == 0) {
        ++FakeMac::kernel().badCalls;
        return static_cast<kern_return_t>(badArgument);
    }
    --FakeMac::kernel().openConnections;
    return KERN_SUCCESS;
}

kern_return_t IOObjectRelease(io_object_t object) {
    if (object != appleSMC || FakeMac::kernel().services == 0) {
        ++FakeMac::kernel().badCalls;
        return static_cast<kern_return_t>(badArgument);
    }
    --FakeMac::kernel().services;
    return KERN_SUCCESS;
}

kern_return_t IOConnectCallStructMethod(mach_port_t connection, std::uint32_t selector, const void* input,
                                        std::size_t inputSize, void* output, std::size_t* outputSize) {
    const std::lock_guard lock(wire().mutex);
    if (wire().open.count(connection) == 0 || selector != 2 || inputSize != sizeof(Fenwhirl::SMCParam) ||
        *outputSize != sizeof(Fenwhirl::SMCParam)) {
        ++FakeMac::kernel().badCalls;
        return static_cast<kern_return_t>(badArgument);
    }
    simulated::Reply reply;
    if (FakeMac::kernel().vanishes || wire().client < 0 ||
        send(wire().client, input, inputSize, MSG_NOSIGNAL) != static_cast<ssize_t>(inputSize) ||
        recv(wire().client, &reply, sizeof reply, 0) != static_cast<ssize_t>(sizeof reply)) {
        return static_cast<kern_return_t>(notFound);
    }
    std::memcpy(output, &reply.record, sizeof reply.record); // even when the controller refuses the request
    return static_cast<kern_return_t>(reply.kernelReturn);
}
}
