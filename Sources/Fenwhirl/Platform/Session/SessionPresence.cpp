#include "Fenwhirl/Platform/Session/SessionPresence.h"

#include <utility>

namespace Fenwhirl {

void SessionPresence::setInFront(bool inFront) {
    if (std::exchange(inFront_, inFront) != inFront) {
        Q_EMIT changed();
    }
    settle();
}

void SessionPresence::settle() {
    if (!std::exchange(settled_, true)) {
        Q_EMIT settled();
    }
}

} // namespace Fenwhirl
