// The controller of a real Mac that runs Linux, reached through the kernel's hardware-monitoring drivers.
//
// Comes before the simulated Mac's socket in the order of `openSystemTransport`.

#pragma once

#include "FenwhirlCore/SMCTransport.h"

// Null when no driver of this system offers a fan or a temperature of a Mac.
[[nodiscard]] std::unique_ptr<SMCTransport> openDriverTransport();
