#include "Fenwhirl/Platform/ProcessScope.h"

void ProcessScope::separate(pid_t /*process*/, const QString& /*name*/, const QString& /*description*/) {
    // Nothing is ended here because of its parent.
}
