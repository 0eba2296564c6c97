// The installed helper, kept for a few last commands after its file has been removed.
//
// While the administrator's password is asked for, heat protection goes on driving fans; once the file is
// gone, nobody could hand them back. A file that is held open lives on until it is closed: Linux lets us run
// it. Elsewhere this is an object that runs nothing.
//
// Threads: any, one at a time. Runs block until the helper has ended.

#pragma once

#include "Fenwhirl/Platform/FileDescriptor.h"

#include <string>
#include <vector>

class KeptHelper {
public:
    explicit KeptHelper(const std::string& helperPath);

    // One command of the helper (as HelperClient::run); false when there is nothing to run.
    [[nodiscard]] bool run(const std::vector<std::string>& arguments) const;

private:
    FileDescriptor file_;
};
