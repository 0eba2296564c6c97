// The CoreGraphics names that Fenwhirl calls, declared from Apple's public reference.
// For the cross-check on Linux only: a Mac build must never see this file.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

// The window server's session; null when there is none. The keys are macros on a Mac, too.
CFDictionaryRef _Nullable CGSessionCopyCurrentDictionary(void) __attribute__((cf_returns_retained));
#define kCGSessionOnConsoleKey CFSTR("kCGSSessionOnConsoleKey")

#ifdef __cplusplus
}
#endif
