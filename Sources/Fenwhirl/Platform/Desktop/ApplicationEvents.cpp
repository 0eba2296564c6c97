#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"

#include "Fenwhirl/Platform/Desktop/QuitAnswer.h"

#include <QCoreApplication>
#include <QTimer>

#include <utility>

namespace Fenwhirl {

namespace {

struct Handlers {
    std::function<void()> reopen;
    std::function<void()> sessionEnd;
};

Handlers& handlers() {
    static Handlers instance;
    return instance;
}

} // namespace

void ApplicationEvents::setReopenHandler(std::function<void()> handler) {
    handlers().reopen = std::move(handler);
}

void ApplicationEvents::setSessionEndHandler(std::function<void()> handler) {
    handlers().sessionEnd = std::move(handler);
}

bool ApplicationEvents::shouldHandleReopen(bool hasVisibleWindows) {
    if (hasVisibleWindows || !handlers().reopen) {
        return true;
    }
    handlers().reopen();
    return false;
}

bool ApplicationEvents::shouldTerminateNow(std::span<const std::uint32_t> reasons) {
    if (quitAnswer(reasons) == QuitAnswer::endNow) {
        if (handlers().sessionEnd) {
            handlers().sessionEnd();
        }
        return true;
    }
    // Deferred, so that the request has been answered before the event loop ends.
    QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    return false;
}

} // namespace Fenwhirl
