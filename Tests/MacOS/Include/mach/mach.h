#pragma once

#include <stdint.h>

typedef uint32_t mach_port_t;
typedef mach_port_t task_port_t;
typedef int kern_return_t;
#define KERN_SUCCESS 0

extern "C" mach_port_t mach_task_self();
