#include "Fenwhirl/Platform/IdleMemory.h"

#include <malloc/malloc.h>

namespace Fenwhirl {

void releaseIdleMemory() {
    malloc_zone_pressure_relief(nullptr, 0); // all zones, as much as possible
}

} // namespace Fenwhirl
