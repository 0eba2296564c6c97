#include "Fenwhirl/HelperClient/HelperRun.h"
#include "Fenwhirl/HelperClient/RetainedHelper.h"
#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"

#include <fcntl.h>
#include <unistd.h>

namespace Fenwhirl {

// O_PATH suffices: the file is executed, never read.
RetainedHelper::RetainedHelper(const std::string& helperPath)
    : file_(open(helperPath.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC)) {}

bool RetainedHelper::run(const std::vector<std::string>& arguments) const {
    const HelperRun run;
    if (!file_.isOpen() || !run.isAllowed()) {
        return false;
    }
    // The path contains our own process ID, because the child's copy of the descriptor is closed by then.
    const std::string path = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(file_.number());
    std::vector<std::string> words = {"--helper"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const auto result = runChild(path, words, ChildOutput::discard, ChildEnvironment::empty);
    return result && result->succeeded();
}

} // namespace Fenwhirl
