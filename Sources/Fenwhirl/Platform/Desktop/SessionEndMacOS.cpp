#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/SessionEnd.h"

#include <utility>

namespace Fenwhirl {

SessionEnd::SessionEnd(std::function<void()> handler) : handler_(std::move(handler)) {
    ApplicationEvents::setSessionEndHandler([this] { handler_(); });
}

SessionEnd::~SessionEnd() {
    ApplicationEvents::setSessionEndHandler({});
}

} // namespace Fenwhirl
