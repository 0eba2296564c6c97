// A small Objective-C runtime for tests. It provides the functions that clang's code for
// `-fobjc-runtime=gnustep-2.0` calls, as far as our sources and the fakes use the language: classes,
// categories, message sends, properties, reference counting, weak references, autorelease pools and blocks.
// It has no exceptions, no protocols at run time and no message forwarding.
//
// It is stricter than the runtime of macOS: an unrecognised selector aborts the program, and objects that are
// autoreleased without an open pool are recorded, because on macOS they would never be released.
//
// Threads: any. Ownership: as defined by the language.

#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Runtime {

// The number of live objects of exactly this class, given by name. Objects that are never freed (constant
// strings, classes) are not counted.
[[nodiscard]] std::size_t liveObjects(const std::string& className);

// The number of live objects by class, without the classes that have none. Blocks on the heap are listed as
// "block".
[[nodiscard]] std::map<std::string, std::size_t> allLiveObjects();

// During its lifetime, the pools that were already open do not count. That simulates the time before the
// event loop runs, when no pool is open.
class WithoutPools {
public:
    WithoutPools();
    ~WithoutPools();
    WithoutPools(const WithoutPools&) = delete;
    WithoutPools& operator=(const WithoutPools&) = delete;

private:
    std::size_t before_;
};

// The class names of the objects that were autoreleased without an open pool since the last call.
[[nodiscard]] std::vector<std::string> takeStrayAutoreleases();

} // namespace Runtime
