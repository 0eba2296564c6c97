#include "Fenwhirl/Platform/ProcessScope.h"

namespace Fenwhirl {

void ProcessScope::separate(pid_t /*process*/, const QString& /*name*/, const QString& /*description*/) {
    // macOS does not end a child because its parent is ended.
}

} // namespace Fenwhirl
