// The real services behind the models of the running application: controller, helper, clock, preferences,
// notifications, login item, and the hand-back of the fans when the application ends abnormally.
//
// Threads: created and destroyed on the main thread; for the functions that it provides, MonitorServices.h
// says where they are called. Must outlive the models. One object for the life of the process, because it
// installs the handlers of fatal signals.

#pragma once

#include "Fenwhirl/Monitoring/MonitorServices.h"
#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"

#include <QString>

#include <memory>

namespace Fenwhirl {

class Activity;
class EmergencyHandBack;

class RealServices {
public:
    RealServices();
    ~RealServices();
    RealServices(const RealServices&) = delete;
    RealServices& operator=(const RealServices&) = delete;

    [[nodiscard]] PreferencesStore& preferences() const { return *preferences_; }

    // The functions refer to this object.
    [[nodiscard]] MonitorServices monitorServices();

private:
    std::unique_ptr<PreferencesStore> preferences_;
    std::unique_ptr<EmergencyHandBack> emergency_;
    std::unique_ptr<Activity> activity_; // exists while the program must act in time
};

// Shows a notification with the text as it is drawn (DrawnText.h), so that the desktop's line breaks do not
// separate a number from its unit.
void showNotification(const QString& title, const QString& message);

} // namespace Fenwhirl
