// A fake of the kernel's AppleSMC service, backed by a simulated Mac behind a socket.
// IOConnectCallStructMethod sends its input as a packet and returns the reply of the simulated Mac.
// Connections, services and their references are counted.
//
// Threads: main thread, except for the IOKit calls themselves: any thread, one at a time for each connection.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace FakeMac {

// A simulated Mac that runs on its own thread during the lifetime of this object. Only one may exist at a
// time.
class Controller {
public:
    explicit Controller(std::string_view machine = "MacBookPro11,4");
    ~Controller();
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    // Runs a command in the simulated Mac's own language ("key F0Ac", "fail …") and returns its answer.
    [[nodiscard]] std::string command(std::string_view line);

private:
    struct State;
    std::unique_ptr<State> state_;
};

struct Kernel {
    bool hasService = true;
    bool opens = true;
    bool vanishes = false; // from now on every call fails, as after the driver was unloaded
    bool isRoot = false;   // whether the caller is root: the kernel refuses writes by other users
    int openConnections = 0;
    int services = 0;             // references not yet released
    int matchingDictionaries = 0; // created and not yet consumed
    int badCalls = 0;             // on a connection that is not open, or with a wrong method or size
};

Kernel& kernel();

} // namespace FakeMac
