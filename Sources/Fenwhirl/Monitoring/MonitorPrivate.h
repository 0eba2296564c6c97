// The internals of the monitor; included only by its own sources.
//
// Threads: every member belongs to the main thread, except `poller`, which belongs to `queue`, and the
// atomics, `custody` and `mailbox`, which are shared. Work that leaves the main thread takes copies of values
// with it and answers through `inbox`, so it may outlive the monitor.

#pragma once

#include "Fenwhirl/Localization/TextKey.h"
#include "Fenwhirl/Monitoring/FanCustody.h"
#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Monitoring/Poller.h"
#include "Fenwhirl/Monitoring/SavedPreferences.h"
#include "Fenwhirl/Monitoring/SensorRecord.h"
#include "Fenwhirl/Platform/Toolkit/MainThreadInbox.h"
#include "Fenwhirl/Platform/Toolkit/SerialQueue.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Fenwhirl {

// The request for the next poll, and what the two threads know of each other's progress. A poll takes the newest
// request when it begins, so at most one poll has to wait behind the running one. Any thread.
class PollMailbox {
public:
    void put(PollRequest request) FENWHIRL_EXCLUDES(mutex_);
    // Whether a poll has to be scheduled: false while one is waiting that will take the newest request.
    [[nodiscard]] bool schedule() FENWHIRL_EXCLUDES(mutex_);
    // To be called by the poll when it begins. A request must have been put before.
    [[nodiscard]] PollRequest take() FENWHIRL_EXCLUDES(mutex_);

    // A result is on its way to the main thread; it has been published there.
    void resultSent() FENWHIRL_EXCLUDES(mutex_);
    void resultPublished() FENWHIRL_EXCLUDES(mutex_);

    // What a poll that is due does: it takes the newest request without the main thread, unless that has not
    // published the last result (it may hang, and then no fan may be driven), or the helper's file is not as the
    // request expects. Then the main thread is asked for a tick, if it has not been asked already.
    enum class Due { poll, askMainThread, wait };
    [[nodiscard]] Due due(const std::optional<HelperFile>& helper) FENWHIRL_EXCLUDES(mutex_);
    // The main thread has received what it was asked.
    void questionReceived() FENWHIRL_EXCLUDES(mutex_);

private:
    Mutex mutex_;
    std::optional<PollRequest> newest_ FENWHIRL_GUARDED_BY(mutex_);
    bool isWaiting_ FENWHIRL_GUARDED_BY(mutex_) = false;
    bool isMainThreadAsked_ FENWHIRL_GUARDED_BY(mutex_) = false;
    int unpublished_ FENWHIRL_GUARDED_BY(mutex_) = 0;
};

struct Monitor::Private {
    Private(Monitor& owner, MonitorServices monitorServices);

    // Stores the value and emits the signal if the value changed.
    template <typename Value>
    void assign(Value& field, Value value, void (Monitor::*changed)()) FENWHIRL_REQUIRES(mainThread) {
        if (field != value) {
            field = std::move(value);
            Q_EMIT(monitor.*changed)();
        }
    }

    // The same for a property of the preferences, which is saved before the signal is emitted.
    template <auto Property, typename Value>
    void remember(Value value, void (Monitor::*changed)()) FENWHIRL_REQUIRES(mainThread) {
        Fenwhirl::save(*services.preferences, Preferences::of<Property>(), value);
        assign(saved.*Property, value, changed);
    }

    void opened(bool available) FENWHIRL_REQUIRES(mainThread);
    // Polls every two seconds from now on.
    void pollRegularly() FENWHIRL_REQUIRES(mainThread);
    // The work of a poll, for the queue.
    [[nodiscard]] std::function<void()> pollWork() FENWHIRL_REQUIRES(mainThread);
    void publish(const PollResult& result) FENWHIRL_REQUIRES(mainThread);
    void checkAlert(std::optional<double> celsius) FENWHIRL_REQUIRES(mainThread);
    void checkVersion(bool installed) FENWHIRL_REQUIRES(mainThread);
    // Applies `edit` to the settings and saves, then sets the preset and saves again, so that the stored
    // state matches the published one at every moment.
    void change(const std::function<void(FanSettings&)>& edit, std::optional<Preset> preset)
        FENWHIRL_REQUIRES(mainThread);
    void save() const FENWHIRL_REQUIRES(mainThread);
    // To be called after a poll, and after any change of what polls or the end of the program depend on: the
    // fans, the settings, the helper, the alerts, the session.
    void publishHandBackState() FENWHIRL_REQUIRES(mainThread);
    [[nodiscard]] PollRequest request() const FENWHIRL_REQUIRES(mainThread);
    // The helper's file as it was when its version was read; empty while that is not known.
    [[nodiscard]] std::optional<HelperFile> helperFile() const FENWHIRL_REQUIRES(mainThread);
    [[nodiscard]] FanCustody::Intent intent() const FENWHIRL_REQUIRES(mainThread);
    // Sends the speeds that the user chose and that no poll has sent yet.
    void sendUnsentSpeeds() FENWHIRL_REQUIRES(mainThread);
    // Runs one command of the final hand-back; true when it succeeded.
    [[nodiscard]] bool handBack(const HelperCommand& command) FENWHIRL_REQUIRES(mainThread);
    // Asks the machine, like Poller::hasGoneBack.
    [[nodiscard]] bool hasGoneBack(int index) const FENWHIRL_REQUIRES(mainThread);
    // Hands back what must go back, and retries for a while where that is refused; true when all is done.
    [[nodiscard]] bool handBackAtTheEnd() FENWHIRL_REQUIRES(mainThread);

    Monitor& monitor;
    const MonitorServices services;
    const std::shared_ptr<std::atomic<bool>> stop = std::make_shared<std::atomic<bool>>(false);
    const std::shared_ptr<std::atomic<unsigned>> resets = std::make_shared<std::atomic<unsigned>>(0);
    const std::shared_ptr<FanCustody> custody;
    const std::shared_ptr<PollMailbox> mailbox = std::make_shared<PollMailbox>();

    QList<FanState> fans FENWHIRL_GUARDED_BY(mainThread);
    QList<SensorState> sensors FENWHIRL_GUARDED_BY(mainThread);
    SensorRecord sensorRecord FENWHIRL_GUARDED_BY(mainThread);
    QList<double> history FENWHIRL_GUARDED_BY(mainThread);
    QList<std::chrono::system_clock::time_point> historyTimes FENWHIRL_GUARDED_BY(mainThread);
    std::optional<double> primaryCelsius FENWHIRL_GUARDED_BY(mainThread);
    bool smcAvailable FENWHIRL_GUARDED_BY(mainThread) = true;
    bool isProtecting FENWHIRL_GUARDED_BY(mainThread) = false;
    Page selectedPage FENWHIRL_GUARDED_BY(mainThread) = Page::dashboard;
    bool helperInstalled FENWHIRL_GUARDED_BY(mainThread) = false;
    bool helperOutdated FENWHIRL_GUARDED_BY(mainThread) = false;
    bool needsHelper FENWHIRL_GUARDED_BY(mainThread) = false;
    bool isInstalling FENWHIRL_GUARDED_BY(mainThread) = false;
    // A key and not the translated text, so that a visible message follows a change of language.
    std::optional<TextKey> controlError FENWHIRL_GUARDED_BY(mainThread);
    SavedPreferences saved FENWHIRL_GUARDED_BY(mainThread);

    // The settings that polls use; replaced and never modified, because polls keep a reference to theirs.
    std::shared_ptr<const FanSettings> settingsSnapshot FENWHIRL_GUARDED_BY(mainThread);
    std::optional<std::chrono::duration<double>> lastAlert FENWHIRL_GUARDED_BY(mainThread);
    bool isStuck FENWHIRL_GUARDED_BY(mainThread) = false; // a poll does not end
    bool hasRestored FENWHIRL_GUARDED_BY(mainThread) = false;
    int removalsRunning FENWHIRL_GUARDED_BY(mainThread) = 0;
    bool isInFront FENWHIRL_GUARDED_BY(mainThread) = true;
    bool isGoingToSleep FENWHIRL_GUARDED_BY(mainThread) = false;
    bool isHelperThere FENWHIRL_GUARDED_BY(mainThread) = false;            // as of the last tick
    std::optional<bool> speaksOurProtocol FENWHIRL_GUARDED_BY(mainThread); // empty until the helper was asked

    // The helper's version is read once at a time. An answer is ignored if the era has
    // changed since the question.
    bool isReadingVersion FENWHIRL_GUARDED_BY(mainThread) = false;
    std::uint64_t helperGeneration FENWHIRL_GUARDED_BY(mainThread) = 0;
    std::optional<std::int64_t> versionStamp FENWHIRL_GUARDED_BY(mainThread);

    std::optional<bool> announcedActsInTime FENWHIRL_GUARDED_BY(mainThread);

    MainThreadInbox inbox;
    const std::shared_ptr<Poller> poller;
    // Last, because its work may still run while it is being destroyed.
    std::unique_ptr<SerialQueue> queue = std::make_unique<SerialQueue>("fenwhirl.smc");
};

} // namespace Fenwhirl
