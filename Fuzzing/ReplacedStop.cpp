#include "ReplacedStop.h"

#include "FenwhirlCore/Precondition.h"

namespace {

struct BrokenPrecondition {};

} // namespace

// Takes the place of the library's definition, which stands alone in its object file.
void stopOnBrokenPrecondition() {
    throw BrokenPrecondition();
}

bool stops(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const BrokenPrecondition&) {
        return true;
    }
    return false;
}
