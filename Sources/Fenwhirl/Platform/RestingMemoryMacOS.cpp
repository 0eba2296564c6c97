#include "Fenwhirl/Platform/RestingMemory.h"

#include <malloc/malloc.h>

void giveBackRestingMemory() {
    malloc_zone_pressure_relief(nullptr, 0); // all zones, as much as possible
}
