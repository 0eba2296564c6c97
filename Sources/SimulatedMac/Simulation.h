// The running program: one simulated Mac, its socket, its commands, and the event loop that serves them.
//
// The loop wakes when a client sends a request, a command arrives, a delayed reply is due, a waiting command
// is to be checked, or a terminal's live line is to be updated. Otherwise it sleeps without a timeout.

#pragma once

#include "SimulatedMac/AnswerFaults.h"
#include "SimulatedMac/CommandStream.h"
#include "SimulatedMac/Mac.h"
#include "SimulatedMac/Options.h"
#include "SimulatedMac/SMCServer.h"
#include "SimulatedMac/ServiceSocket.h"
#include "SimulatedMac/Terminal.h"

#include <cstdint>
#include <memory>
#include <string>

namespace simulated {

class Simulation {
public:
    // Sets everything up. Null on failure; `error` says what is missing.
    [[nodiscard]] static std::unique_ptr<Simulation> make(const Options& options, std::string& error);

    Simulation(const Simulation&) = delete;
    Simulation& operator=(const Simulation&) = delete;
    Simulation(Simulation&&) = delete;
    Simulation& operator=(Simulation&&) = delete;
    ~Simulation();

    // Prints the ready line and serves clients until a signal or a command ends the program. Returns the exit
    // status.
    [[nodiscard]] int run();

private:
    Simulation(Options options, const MachineTable& table);

    [[nodiscard]] bool prepare(std::string& error);
    [[nodiscard]] bool watch(int file, std::uint64_t tag);
    [[nodiscard]] int timeoutMilliseconds(Instant now) const;
    void handle(std::uint64_t tag, std::uint32_t events, Instant now);
    void readInput();
    void watchInput(bool watched);
    void runCommands(Instant now);
    void logWrite(const WriteEntry& entry) const;

    Options options_;
    Mac mac_;
    AnswerFaults faults_;
    Terminal terminal_;
    CommandStream input_;
    CommandStream script_;
    LineCutter lines_;
    int epoll_ = -1;
    int signals_ = -1;
    int writeLog_ = -1;
    bool inputOpen_ = true;
    bool inputWatched_ = false;
    double paintedSeconds_ = 0;
    std::unique_ptr<ServiceSocket> place_;
    std::unique_ptr<SMCServer> server_;
    std::unique_ptr<CommandContext> context_;
};

} // namespace simulated
