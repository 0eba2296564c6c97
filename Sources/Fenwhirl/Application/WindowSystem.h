// What the windows ask of the system, as functions that can be replaced. By default they are the system's own.
//
// Threads: main thread only.

#pragma once

#include "Fenwhirl/Platform/Desktop/FileDialogs.h"
#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"
#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

#include <functional>

namespace Fenwhirl {

struct WindowSystem {
    std::function<void(QWindow& window)> configure = MainWindowBehaviour::configure;
    std::function<void()> setRegular = MainWindowBehaviour::setRegular;
    std::function<void()> setAccessory = MainWindowBehaviour::setAccessory;
    std::function<void(QWindow& window, const QString& token)> bringToFront =
        MainWindowBehaviour::bringToFront;
    std::function<bool()> focusFollowsPointer = Fenwhirl::focusFollowsPointer;
    std::function<bool()> isAskingSavePath = Fenwhirl::isAskingSavePath;
};

} // namespace Fenwhirl
