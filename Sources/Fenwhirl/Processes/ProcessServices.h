// Everything that the process monitor asks of the world outside it, as values that the application fills with
// the real thing and tests with their own.
//
// Each function says on which thread it is called; none may throw.

#pragma once

#include "Fenwhirl/Processes/AppLoad.h"
#include "Fenwhirl/Processes/AppQuitting.h"

#include <chrono>
#include <functional>

struct ProcessServices {
    // Looks at all processes; blocks for as long as that takes. On "fenwhirl.processes".
    std::function<ProcessSample()> sample;
    // Makes a look that is under way, and every later one, return soon; for the end. Main thread.
    std::function<void()> cancelSampling;

    // For quitting an application. Main thread.
    QuitServices quit;

    // From one sample to the next while the page is shown.
    std::chrono::milliseconds interval = std::chrono::seconds(4);
    // From a quit to the sample that shows its outcome: what applications usually take to go.
    std::chrono::milliseconds delayAfterQuit = std::chrono::milliseconds(1500);
};

// The processes of this machine.
[[nodiscard]] ProcessServices systemProcessServices();
