// What the program keeps and shows for this user: preferences, the login item, a notification.
//
// Each is tried where it belongs and taken away again; what was there before is there afterwards, untouched.
//
// Threads: main thread.

#pragma once

#include "Fenwhirl/Application/SelfCheck/SelfCheck.h"
#include "Fenwhirl/Platform/Notifier.h"
#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Fenwhirl {

struct UserCheckServices {
    // A store for trials, opened anew each time, and its removal together with whatever it has left.
    std::function<std::unique_ptr<PreferencesStore>()> openPreferences;
    std::function<void()> removePreferences;

    std::string loginItemPath;
    std::function<bool()> isLoginItemEnabled;
    std::function<bool(bool on)> setLoginItemEnabled;

    std::function<Notifier::Delivery(const QString& title, const QString& message)> notify;
};

// The checks keep the services.
[[nodiscard]] std::vector<SelfCheck> userChecks(const UserCheckServices& services);

// Where an existing login item lies while the check writes another in its place. Should the check be killed
// in that moment, the next one finds it there and puts it back.
[[nodiscard]] std::string keptLoginItemPath(const std::string& loginItemPath);

} // namespace Fenwhirl
