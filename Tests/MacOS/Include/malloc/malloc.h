#pragma once

#include <stddef.h>

typedef struct malloc_zone malloc_zone_t;
extern "C" size_t malloc_zone_pressure_relief(malloc_zone_t* zone, size_t goal);
