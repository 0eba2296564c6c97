#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/SessionEnd.h"

#include <utility>

SessionEnd::SessionEnd(std::function<void()> handler) {
    ApplicationEvents::setSessionEndHandler(std::move(handler));
}

SessionEnd::~SessionEnd() {
    ApplicationEvents::setSessionEndHandler({});
}
