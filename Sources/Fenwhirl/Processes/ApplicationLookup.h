// How this system finds the application of a process that lies in no bundle.
//
// Threads: as the listing's, one at a time.

#pragma once

#include "Fenwhirl/Platform/ProcessTable.h"
#include "Fenwhirl/Processes/ProcessListing.h"

#include <functional>
#include <memory>

class ApplicationLookup {
public:
    ApplicationLookup() = default;
    virtual ~ApplicationLookup() = default;
    ApplicationLookup(const ApplicationLookup&) = delete;
    ApplicationLookup& operator=(const ApplicationLookup&) = delete;

    // For the processes of the table's last listing. Refers to both.
    [[nodiscard]] virtual FoldContext::ApplicationOf forListing(const ProcessTable& table) = 0;

    // Null where every application is a bundle.
    [[nodiscard]] static std::unique_ptr<ApplicationLookup> create();
};
