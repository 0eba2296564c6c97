// The kernel's service AppleSMC, answered by a simulated Mac through its socket: what
// IOConnectCallStructMethod is given goes out as a packet, and what the simulated Mac answers comes back.
// Connections, services and their references are counted.
//
// Main thread, but for the calls of IOKit themselves: any thread, one at a time for each connection.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace FakeMac {

// A simulated Mac that runs on a thread of its own for as long as this lives. One at a time.
class Controller {
public:
    explicit Controller(std::string_view machine = "MacBookPro11,4");
    ~Controller();
    Controller(const Controller&) = delete;
    Controller& operator=(const Controller&) = delete;

    // A command of the simulated Mac's own language ("key F0Ac", "fail …"), and its answer.
    [[nodiscard]] std::string command(std::string_view line);

private:
    struct State;
    std::unique_ptr<State> state_;
};

struct Kernel {
    bool hasService = true;
    bool opens = true;
    bool vanishes = false; // every call from now on fails, as after the driver was unloaded
    bool isRoot = false;   // who asks: the kernel refuses writes of everybody else
    int openConnections = 0;
    int services = 0;             // references held
    int matchingDictionaries = 0; // made and not consumed
    int badCalls = 0;             // on a connection that is not open, or with another method or size
};

Kernel& kernel();

} // namespace FakeMac
