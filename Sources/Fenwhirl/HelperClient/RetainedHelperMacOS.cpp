#include "Fenwhirl/HelperClient/RetainedHelper.h"

// macOS cannot execute a file that has no name any more.

namespace Fenwhirl {

RetainedHelper::RetainedHelper(const std::string&) {}

bool RetainedHelper::run(const std::vector<std::string>&) const {
    return false;
}

} // namespace Fenwhirl
