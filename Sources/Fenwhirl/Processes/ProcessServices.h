// The process monitor's dependencies on the system, as functions and values: the application supplies the
// real ones, tests supply their own.
//
// Each function says on which thread it is called; none may throw.

#pragma once

#include "Fenwhirl/Processes/AppLoad.h"
#include "Fenwhirl/Processes/AppQuitting.h"

#include <chrono>
#include <functional>

namespace Fenwhirl {

struct ProcessServices {
    // Samples all processes; blocks for as long as that takes. On "fenwhirl.processes".
    std::function<ProcessSample()> sample;
    // Makes a sample in progress, and every later one, return soon; used at shutdown. Main thread.
    std::function<void()> cancelSampling;

    // For quitting an application. Main thread.
    QuitServices quit;

    // The interval between samples while the page is shown.
    std::chrono::milliseconds interval = std::chrono::seconds(4);
    // The time from a quit to the sample that shows its outcome: applications usually end within it.
    std::chrono::milliseconds delayAfterQuit = std::chrono::milliseconds(1500);
};

// The services for the processes of this machine.
[[nodiscard]] ProcessServices systemProcessServices();

} // namespace Fenwhirl
