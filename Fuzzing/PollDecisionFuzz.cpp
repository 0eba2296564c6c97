// A life of polls drawn from the bytes, decided by the program and by a second, simple opinion: both must
// agree at every poll, and no fan may be driven without a temperature or in an emergency.

#include "Fenwhirl/Monitoring/PollLife.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // About as many polls as the bytes can feed, because what follows repeats itself; and not so many that a
    // life takes longer than a millisecond.
    if (!agreesWithModel(ByteSource({data, size}), std::min<std::size_t>(8 + size / 12, 80))) {
        std::abort();
    }
    return 0;
}
