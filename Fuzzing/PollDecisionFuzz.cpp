// A life of polls drawn from the bytes, decided by the program and by a second, simple opinion: both must
// agree at every poll, and no fan may be driven without a temperature or in an emergency.

#include "Fenwhirl/Monitoring/PollLife.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // About as many polls as the bytes can feed; what follows repeats itself.
    if (!agreesWithModel(ByteSource({data, size}), 8 + size / 12)) {
        std::abort();
    }
    return 0;
}
