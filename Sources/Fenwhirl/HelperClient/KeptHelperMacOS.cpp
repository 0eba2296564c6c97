#include "Fenwhirl/HelperClient/KeptHelper.h"

// A file without a name cannot be run there.

KeptHelper::KeptHelper(const std::string&) {}

bool KeptHelper::run(const std::vector<std::string>&) const {
    return false;
}
