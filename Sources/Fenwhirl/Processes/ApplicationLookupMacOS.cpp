#include "Fenwhirl/Processes/ApplicationLookup.h"

namespace Fenwhirl {

std::unique_ptr<ApplicationLookup> ApplicationLookup::create() {
    return nullptr;
}

} // namespace Fenwhirl
