// Whether the files of this installation are where they look for each other.
//
// Threads: any.

#pragma once

#include "Fenwhirl/Application/SelfCheck/SelfCheck.h"

#include <optional>
#include <string>
#include <vector>

namespace Fenwhirl {

struct Installation {
    std::optional<std::string> executable; // that this process was started from
    std::optional<std::string> library;    // that this code was loaded from

    // Of this process.
    [[nodiscard]] static Installation present();
};

[[nodiscard]] std::vector<SelfCheck> installationChecks(const Installation& installation);

} // namespace Fenwhirl
