// Finds the application of a process that is not inside a bundle, in the way of this system.
//
// Threads: one at a time, the same as the listing.

#pragma once

#include "Fenwhirl/Platform/Processes/ProcessTable.h"
#include "Fenwhirl/Processes/ProcessListing.h"

#include <functional>
#include <memory>

namespace Fenwhirl {

class ApplicationLookup {
public:
    ApplicationLookup() = default;
    virtual ~ApplicationLookup() = default;
    ApplicationLookup(const ApplicationLookup&) = delete;
    ApplicationLookup& operator=(const ApplicationLookup&) = delete;

    // The look-up for the processes of the table's last listing. It refers to this object and to the table.
    [[nodiscard]] virtual FoldContext::ApplicationOf forListing(const ProcessTable& table) = 0;

    // Null on systems where every application is a bundle.
    [[nodiscard]] static std::unique_ptr<ApplicationLookup> create();
};

} // namespace Fenwhirl
