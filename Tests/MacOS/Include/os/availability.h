// Availability attributes. They expand to nothing, because the compiler does not build for macOS.
#pragma once

#define API_AVAILABLE(...)
