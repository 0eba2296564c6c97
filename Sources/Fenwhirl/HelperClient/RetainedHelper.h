// Keeps the installed helper usable for a few last commands after its file has been removed.
//
// While the administrator's password is being asked for, heat protection goes on driving fans. Once the file
// is gone, nobody could hand those fans back. A removed file continues to exist while it is held open, and
// Linux can still execute it. On other systems this object runs nothing.
//
// Threads: any, one at a time. Runs block until the helper has ended.

#pragma once

#include "Fenwhirl/Platform/Toolkit/FileDescriptor.h"

#include <string>
#include <vector>

namespace Fenwhirl {

class RetainedHelper {
public:
    explicit RetainedHelper(const std::string& helperPath);

    // Runs one command of the helper (as HelperClient::run does); false when there is nothing to run.
    [[nodiscard]] bool run(const std::vector<std::string>& arguments) const;

private:
    FileDescriptor file_;
};

} // namespace Fenwhirl
