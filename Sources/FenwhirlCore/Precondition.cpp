#include "FenwhirlCore/Precondition.h"

#include <cstdlib>

void stopOnBrokenPrecondition() {
    std::abort();
}
