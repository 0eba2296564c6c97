#include "FenwhirlCore/Precondition.h"

#include <cstdlib>

namespace Fenwhirl {

void stopOnBrokenPrecondition() {
    std::abort();
}

} // namespace Fenwhirl
