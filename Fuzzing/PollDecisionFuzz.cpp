// Runs a sequence of polls derived from the bytes through the program's decisions and through a second,
// simple model. Both must agree at every poll, and no fan may be driven without a temperature or in an
// emergency.

#include "Fenwhirl/Monitoring/PollLife.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace Fenwhirl {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // About as many polls as the bytes can supply, because later ones would repeat; and few enough that a run
    // takes no longer than a millisecond.
    if (!agreesWithModel(ByteSource({data, size}), std::min<std::size_t>(8 + size / 12, 80))) {
        std::abort();
    }
    return 0;
}

} // namespace Fenwhirl
