#pragma once

#include <stdint.h>

extern "C" int _NSGetExecutablePath(char* buffer, uint32_t* size);
