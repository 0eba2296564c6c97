// simulated-mac: a Mac's SMC in software. See Options.cpp for what it can do.

#include "SimulatedMac/MachineTable.h"
#include "SimulatedMac/Options.h"
#include "SimulatedMac/Simulation.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int wrongUsage = 64; // EX_USAGE

void printMachines() {
    for (const simulated::EmbeddedTable& embedded : simulated::embeddedTables()) {
        const auto table = simulated::findMachine(embedded.name);
        if (table) {
            (void)std::printf("%-16s %s%s\n", table->name.c_str(), simulated::describeMachine(*table).c_str(),
                              table->name == simulated::Options::usualMachine ? " (usual)" : "");
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    std::string error;
    const auto options = simulated::parseOptions(arguments, error);
    if (!options) {
        (void)std::fprintf(stderr, "simulated-mac: %s; --help explains\n", error.c_str());
        return wrongUsage;
    }
    if (options->help) {
        (void)std::fputs(simulated::usageText().c_str(), stdout);
        return 0;
    }
    if (options->list) {
        printMachines();
        return 0;
    }
    const auto simulation = simulated::Simulation::make(*options, error);
    if (!simulation) {
        (void)std::fprintf(stderr, "simulated-mac: %s\n", error.c_str());
        return 1;
    }
    return simulation->run();
}
