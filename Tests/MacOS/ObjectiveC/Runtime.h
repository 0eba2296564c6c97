// A small Objective-C runtime for tests: what clang's code for `-fobjc-runtime=gnustep-2.0` calls, as far as
// our sources and the fakes beside it use the language. Classes, categories, message sends, properties,
// reference counting, weak references, autorelease pools and blocks; no exceptions, no protocols at run time,
// no forwarding.
//
// It is stricter than a Mac's: a message that nobody understands ends the program, and what is autoreleased
// where no pool is open is counted, because there it would never be let go.
//
// Threads: any. Ownership: as the language has it.

#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Runtime {

// Objects of exactly this class that are alive, by its name. Those that are never freed (constant strings,
// classes) are not counted.
[[nodiscard]] std::size_t liveObjects(const std::string& className);

// Objects alive by class, those without any left out; blocks on the heap under "block".
[[nodiscard]] std::map<std::string, std::size_t> allLiveObjects();

// While it lives, pools that were open before do not count: as before the event loop runs, when there are
// none.
class WithoutPools {
public:
    WithoutPools();
    ~WithoutPools();
    WithoutPools(const WithoutPools&) = delete;
    WithoutPools& operator=(const WithoutPools&) = delete;

private:
    std::size_t before_;
};

// Classes of the objects that were autoreleased where no pool counted, since the last call.
[[nodiscard]] std::vector<std::string> takeStrayAutoreleases();

} // namespace Runtime
