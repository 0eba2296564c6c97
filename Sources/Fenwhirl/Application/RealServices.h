// The real things behind the models of the running application: controller, helper, clock, preferences,
// notifications, login item, and the hand-back of the fans when the application does not live to do it
// itself.
//
// Threads: made and destroyed on the main thread; the functions it gives out say themselves where they are
// called. Must outlive the models. One object for the life of the process: it installs the handlers of fatal
// signals.

#pragma once

#include "Fenwhirl/Monitoring/MonitorServices.h"
#include "Fenwhirl/Platform/PreferencesStore.h"

#include <QString>

#include <memory>

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
    std::unique_ptr<Activity> activity_; // while the program must act in time
};

// Shows a notification as texts are drawn: the desktop breaks its lines, and no number is parted from its
// unit.
void showNotification(const QString& title, const QString& message);
