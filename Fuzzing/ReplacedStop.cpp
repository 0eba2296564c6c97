#include "ReplacedStop.h"

#include "FenwhirlCore/Precondition.h"

namespace Fenwhirl {

namespace {

struct BrokenPrecondition {};

} // namespace

// Overrides the library's definition, which is the only one in its object file, so the linker leaves that
// file out.
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

} // namespace Fenwhirl
