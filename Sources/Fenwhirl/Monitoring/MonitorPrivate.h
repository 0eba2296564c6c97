// The inside of the monitor; included by its sources alone.
//
// Threads: every member belongs to the main thread but for `poller`, which belongs to `queue`, and `stop`,
// which is shared. Work that leaves the main thread takes values with it and answers through `inbox`, so it
// may outlive the monitor.

#pragma once

#include "Fenwhirl/Localization/TextKey.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Monitoring/Poller.h"
#include "Fenwhirl/Monitoring/SavedPreferences.h"
#include "Fenwhirl/Platform/MainThreadInbox.h"
#include "Fenwhirl/Platform/SerialQueue.h"
#include "Fenwhirl/Platform/Threads.h"

#include <QTimer>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

struct Monitor::Private {
    Private(Monitor& owner, MonitorServices monitorServices);

    // Stores the value and emits the signal when it is another one.
    template <typename Value>
    void assign(Value& field, Value value, void (Monitor::*changed)()) FENWHIRL_REQUIRES(mainThread) {
        if (field != value) {
            field = std::move(value);
            Q_EMIT(monitor.*changed)();
        }
    }

    void opened(bool available) FENWHIRL_REQUIRES(mainThread);
    void publish(const PollResult& result) FENWHIRL_REQUIRES(mainThread);
    void checkAlert(std::optional<double> celsius) FENWHIRL_REQUIRES(mainThread);
    void checkVersion(bool installed) FENWHIRL_REQUIRES(mainThread);
    // Lets `edit` work on the settings and saves, then takes the preset and saves again: at every moment what
    // is stored is what was published.
    void change(const std::function<void(FanSettings&)>& edit, std::optional<Preset> preset)
        FENWHIRL_REQUIRES(mainThread);
    void save() const FENWHIRL_REQUIRES(mainThread);
    // After a poll and after a change of the fans, the settings, the helper's presence or the alerts' switch.
    void announceObligations() FENWHIRL_REQUIRES(mainThread);
    [[nodiscard]] HandBack handBack(bool isHelperInstalled, std::span<const int> fansRead) const
        FENWHIRL_REQUIRES(mainThread);
    [[nodiscard]] std::vector<int> publishedFans() const FENWHIRL_REQUIRES(mainThread);

    Monitor& monitor;
    const MonitorServices services;
    const std::shared_ptr<std::atomic<bool>> stop = std::make_shared<std::atomic<bool>>(false);

    QList<FanState> fans FENWHIRL_GUARDED_BY(mainThread);
    QList<SensorState> sensors FENWHIRL_GUARDED_BY(mainThread);
    QList<double> history FENWHIRL_GUARDED_BY(mainThread);
    std::optional<double> primaryCelsius FENWHIRL_GUARDED_BY(mainThread);
    bool smcAvailable FENWHIRL_GUARDED_BY(mainThread) = true;
    Page selectedPage FENWHIRL_GUARDED_BY(mainThread) = Page::dashboard;
    bool helperInstalled FENWHIRL_GUARDED_BY(mainThread) = false;
    bool helperOutdated FENWHIRL_GUARDED_BY(mainThread) = false;
    bool needsHelper FENWHIRL_GUARDED_BY(mainThread) = false;
    bool isInstalling FENWHIRL_GUARDED_BY(mainThread) = false;
    // Not the text itself: a message that is on the screen follows the language.
    std::optional<TextKey> controlError FENWHIRL_GUARDED_BY(mainThread);
    SavedPreferences saved FENWHIRL_GUARDED_BY(mainThread);

    // What polls see of the settings; replaced, never changed, because polls hold on to theirs.
    std::shared_ptr<const FanSettings> settingsSnapshot FENWHIRL_GUARDED_BY(mainThread);
    std::optional<std::chrono::duration<double>> lastAlert FENWHIRL_GUARDED_BY(mainThread);
    bool isStuck FENWHIRL_GUARDED_BY(mainThread) = false; // a poll that does not end
    bool hasRestored FENWHIRL_GUARDED_BY(mainThread) = false;
    int removalsRunning FENWHIRL_GUARDED_BY(mainThread) = 0;

    // One reading of the helper's version at a time; an answer of an earlier era is ignored.
    bool isReadingVersion FENWHIRL_GUARDED_BY(mainThread) = false;
    std::uint64_t helperEra FENWHIRL_GUARDED_BY(mainThread) = 0;
    std::optional<std::int64_t> versionStamp FENWHIRL_GUARDED_BY(mainThread);

    std::optional<bool> announcedActsInTime FENWHIRL_GUARDED_BY(mainThread);

    QTimer timer FENWHIRL_GUARDED_BY(mainThread);
    MainThreadInbox inbox;
    const std::shared_ptr<Poller> poller;
    // Last: its work may still run while it is destroyed.
    std::unique_ptr<SerialQueue> queue = std::make_unique<SerialQueue>("fenwhirl.smc");
};
