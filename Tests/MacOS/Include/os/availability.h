// Marks of availability: nothing to a compiler that does not build for macOS.
#pragma once

#define API_AVAILABLE(...)
