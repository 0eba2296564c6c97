// The application's single observable model of the fans: what the machine reports and what the user wants.
//
// Every two seconds it reads all fans and temperatures, lets `decide` (PollDecision.h) determine what each
// fan should be doing, runs the privileged helper for what has to change, and publishes the result. Views
// observe its properties and call its operations; they never access the controller.
//
// Threads: the object lives on the main thread, and so do its properties, signals and operations. The
// controller's connection, the sent targets and the safety state belong to its serial queue "fenwhirl.smc".
// Only value snapshots are passed between the two. Blocking work (helper runs, installs, reports) never runs
// on the main thread, except restoreAutomaticBlocking at the end.
//
// Ownership: one object for the life of the process, created by the application and also
// reachable as shared(). All its dependencies on the system come in through MonitorServices, so
// that tests can supply their own.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"
#include "Fenwhirl/Monitoring/AppTheme.h"
#include "Fenwhirl/Monitoring/FanSetting.h"
#include "Fenwhirl/Monitoring/MonitorServices.h"
#include "Fenwhirl/Monitoring/MonitorStates.h"
#include "Fenwhirl/Monitoring/Page.h"
#include "Fenwhirl/Monitoring/Preset.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <QList>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace Fenwhirl {

class Monitor : public QObject {
    Q_OBJECT

public:
    explicit Monitor(MonitorServices services, QObject* parent = nullptr);
    ~Monitor() override;
    Q_DISABLE_COPY_MOVE(Monitor)

    // The application's monitor; null before it is created and after it is destroyed.
    [[nodiscard]] static Monitor* shared();

    // Opens the controller on the queue and starts polling; to be called once.
    void start();
    // Requests one poll from the queue, in addition to those that come every 2 seconds. At most one poll waits
    // behind a running one, and it uses the settings that are current when it begins.
    void tick();
    // Sets whether the user's session is the one in front; initially it is. While it is not, another user's
    // Fenwhirl may drive the fans: polls only read then, and the fans of this instance are handed back.
    void setInFront(bool isInFront);
    // To be called when the computer is about to sleep: hands back the fans at once, including those with a
    // constant speed; polls then only read until `wakeUp`. `done` runs on the main thread after the attempt.
    void prepareForSleep(std::function<void()> done);
    // To be called when the computer is awake, or did not go to sleep after all: requests a poll,
    // which takes the fans again.
    void wakeUp();

    // --- The machine, as of the last poll ---
    [[nodiscard]] const QList<FanState>& fans() const;
    [[nodiscard]] const QList<SensorState>& sensors() const;
    [[nodiscard]] const QList<double>& history() const; // main temperatures, oldest first, at most 300
    // When each of them was read. Polls can fail, wait or pause for sleep, so they are not always 2 s apart.
    [[nodiscard]] const QList<std::chrono::system_clock::time_point>& historyTimes() const;
    [[nodiscard]] std::optional<double> primaryCelsius() const;
    [[nodiscard]] bool smcAvailable() const;
    [[nodiscard]] bool isProtecting() const; // heat protection is driving every fan at its maximum

    // --- The helper ---
    [[nodiscard]] bool helperInstalled() const;
    [[nodiscard]] bool helperOutdated() const;
    [[nodiscard]] bool needsHelper() const; // the last poll required manual control of some fan
    [[nodiscard]] bool isInstalling() const;
    [[nodiscard]] QString controlError() const; // translated; empty when there is none
    void dismissControlError();

    // --- What the user wants ---
    [[nodiscard]] const FanSettings& settings() const;
    [[nodiscard]] FanSetting setting(int index) const; // the default setting if there is none
    void setSetting(int index, const FanSetting& setting);
    [[nodiscard]] std::optional<Preset> activePreset() const;
    void apply(Preset preset);
    [[nodiscard]] Page selectedPage() const;
    void setSelectedPage(Page page);
    [[nodiscard]] AppTheme theme() const;
    void setTheme(AppTheme theme);
    [[nodiscard]] AppLanguage language() const;
    void setLanguage(AppLanguage language);
    [[nodiscard]] bool alertsEnabled() const;
    void setAlertsEnabled(bool on);
    [[nodiscard]] double warmThreshold() const; // °C
    void setWarmThreshold(double celsius);
    [[nodiscard]] double hotThreshold() const; // °C
    void setHotThreshold(double celsius);
    [[nodiscard]] double alertThreshold() const; // °C
    void setAlertThreshold(double celsius);
    [[nodiscard]] bool didOnboard() const;
    void setDidOnboard(bool done);

    // --- Derived ---
    [[nodiscard]] QList<SensorState> featured() const; // at most six
    [[nodiscard]] HealthStatus status() const;
    [[nodiscard]] double averageRPM() const;
    [[nodiscard]] QString menuText() const;
    [[nodiscard]] QString fanName(const FanState& fan) const;

    // --- Lifecycle ---
    void installHelper();
    void uninstallHelper();
    void resetToAutomatic();
    [[nodiscard]] bool launchAtLogin() const;
    void setLaunchAtLogin(bool on);
    // The completion runs on the main thread with the report's text.
    void makeDiagnosticReport(bool withFanTest, std::function<void(const QString& text)> completion);
    // Hands the fans back. Returns when that is done, or when it has been refused for too long; the guard
    // then continues. Fans with a constant speed keep it, and those to which no poll has sent their speed yet
    // are sent it. Further polls do nothing. For the end of the process.
    void restoreAutomaticBlocking();

Q_SIGNALS:
    void fansChanged();
    void sensorsChanged();
    void historyChanged();
    void primaryCelsiusChanged();
    void smcAvailableChanged();
    void isProtectingChanged();
    void helperInstalledChanged();
    void helperOutdatedChanged();
    void needsHelperChanged();
    void isInstallingChanged();
    void controlErrorChanged();
    void settingsChanged();
    void activePresetChanged();
    void selectedPageChanged();
    void themeChanged();
    void languageChanged();
    void alertsEnabledChanged();
    void warmThresholdChanged();
    void hotThresholdChanged();
    void alertThresholdChanged();
    void didOnboardChanged();
    void launchAtLoginChanged();
    // The last poll has been published completely; emitted once per poll, after the signals above.
    void polled();

private:
    struct Private;

    // The state, for code that runs on the main thread; a call on another thread ends the process.
    [[nodiscard]] Private& state() const FENWHIRL_ASSERTS_CURRENT(mainThread);

    std::unique_ptr<Private> d_;
};

} // namespace Fenwhirl
