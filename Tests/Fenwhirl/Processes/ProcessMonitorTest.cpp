#include "Fenwhirl/Processes/ProcessMonitor.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QThread>

#include <atomic>
#include <cmath>
#include <future>
#include <gtest/gtest.h>
#include <limits>
#include <mutex>
#include <semaphore>

namespace Fenwhirl {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int patienceMilliseconds = 20'000;

ProcessSample sampleOf(const QString& name, double cpu) {
    AppLoad app;
    app.id = u"proc:"_s + name;
    app.name = name;
    app.cpu = cpu;
    return {{app}, cpu + 1};
}

// A source of samples that the test releases one by one.
class Samples {
public:
    [[nodiscard]] ProcessServices services() {
        ProcessServices services;
        services.sample = [this] {
            const int number = ++begun_;
            running_.release();
            allowed_.acquire();
            return sampleOf(u"sample"_s, number);
        };
        services.cancelSampling = [this] { allowed_.release(1000); };
        services.interval = 1h;
        services.quit.startOf = [](qint32) { return std::optional<ProcessStart>(1); };
        services.quit.askApplication = [](qint32, bool) { return false; };
        services.quit.sendSignal = [this](qint32 pid, ProcessStart, int signal) {
            signals_.push_back({pid, signal});
        };
        return services;
    }

    void waitUntilOneRuns() { running_.acquire(); }

    void allow(int count) { allowed_.release(count); }

    [[nodiscard]] int begun() const { return begun_; }

    [[nodiscard]] const std::vector<std::pair<qint32, int>>& sentSignals() const { return signals_; }

private:
    std::atomic<int> begun_ = 0;
    std::counting_semaphore<> running_{0};
    std::counting_semaphore<> allowed_{0};
    std::vector<std::pair<qint32, int>> signals_;
};

} // namespace

TEST(ProcessMonitor, IsEmptyBeforeTheFirstSample) {
    Samples samples;
    const ProcessMonitor monitor(samples.services());
    EXPECT_TRUE(monitor.apps().isEmpty());
    EXPECT_EQ(monitor.totalCPU(), 0);
    EXPECT_EQ(samples.begun(), 0);
}

TEST(ProcessMonitor, IsSharedWhileItLives) {
    EXPECT_EQ(ProcessMonitor::shared(), nullptr);
    {
        Samples samples;
        const ProcessMonitor monitor(samples.services());
        EXPECT_EQ(ProcessMonitor::shared(), &monitor);
        const ProcessMonitor other(samples.services());
        EXPECT_EQ(ProcessMonitor::shared(), &monitor);
    }
    EXPECT_EQ(ProcessMonitor::shared(), nullptr);
}

TEST(ProcessMonitor, PublishesASampleOnTheMainThread) {
    Samples samples;
    ProcessMonitor monitor(samples.services());
    QSignalSpy apps(&monitor, &ProcessMonitor::appsChanged);
    QSignalSpy total(&monitor, &ProcessMonitor::totalCPUChanged);
    QThread* publishedOn = nullptr;
    QObject::connect(
        &monitor, &ProcessMonitor::appsChanged, &monitor,
        [&publishedOn] { publishedOn = QThread::currentThread(); }, Qt::DirectConnection);
    samples.allow(1);
    monitor.refresh();
    EXPECT_TRUE(monitor.apps().isEmpty()) << "nothing may change before the event loop runs";
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    EXPECT_EQ(monitor.apps(), sampleOf(u"sample"_s, 1).apps);
    EXPECT_EQ(monitor.totalCPU(), 2);
    EXPECT_EQ(total.count(), 1);
    EXPECT_EQ(publishedOn, QCoreApplication::instance()->thread());
}

TEST(ProcessMonitor, TellsOnlyOfWhatDiffers) {
    ProcessSample next = sampleOf(u"sample"_s, 1);
    ProcessServices services;
    services.sample = [&next] { return next; }; // no sample is in progress while it changes
    services.cancelSampling = [] {};
    ProcessMonitor monitor(services);
    QSignalSpy apps(&monitor, &ProcessMonitor::appsChanged);
    QSignalSpy total(&monitor, &ProcessMonitor::totalCPUChanged);
    monitor.refresh();
    ASSERT_TRUE(total.wait(patienceMilliseconds));
    next.totalCPU += 1;
    monitor.refresh();
    ASSERT_TRUE(total.wait(patienceMilliseconds));
    EXPECT_EQ(apps.count(), 1);
    next.apps.first().cpu += 1;
    monitor.refresh();
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    EXPECT_EQ(total.count(), 2);
}

TEST(ProcessMonitor, TakesSamplesOnItsOwnThread) {
    std::promise<Qt::HANDLE> thread;
    ProcessServices services;
    services.sample = [&thread] {
        thread.set_value(QThread::currentThreadId());
        return ProcessSample{};
    };
    services.cancelSampling = [] {};
    ProcessMonitor monitor(services);
    monitor.refresh();
    EXPECT_NE(thread.get_future().get(), QThread::currentThreadId());
}

TEST(ProcessMonitor, DropsRequestsWhileASampleIsUnderWay) {
    Samples samples;
    ProcessMonitor monitor(samples.services());
    QSignalSpy apps(&monitor, &ProcessMonitor::appsChanged);
    monitor.refresh();
    samples.waitUntilOneRuns();
    for (int i = 0; i < 10; ++i) {
        monitor.refresh();
    }
    samples.allow(100);
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    QCoreApplication::processEvents();
    EXPECT_EQ(samples.begun(), 1);

    monitor.refresh();
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    EXPECT_EQ(samples.begun(), 2) << "after the publication requests count again";
}

TEST(ProcessMonitor, DropsARequestBetweenTheSampleAndItsPublication) {
    Samples samples;
    ProcessMonitor monitor(samples.services());
    QSignalSpy apps(&monitor, &ProcessMonitor::appsChanged);
    samples.allow(100);
    monitor.refresh();
    samples.waitUntilOneRuns();
    monitor.refresh(); // the event loop has not run, so the first result is not published yet
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    EXPECT_EQ(samples.begun(), 1);
}

TEST(ProcessMonitor, SamplesAtOnceWhenStartedAndOnlyOnceWhenStartedTwice) {
    Samples samples;
    ProcessMonitor monitor(samples.services());
    QSignalSpy apps(&monitor, &ProcessMonitor::appsChanged);
    samples.allow(100);
    monitor.start();
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    monitor.start();
    QCoreApplication::processEvents();
    EXPECT_EQ(samples.begun(), 1);
}

TEST(ProcessMonitor, SamplesAgainAndAgainUntilStopped) {
    Samples samples;
    ProcessServices services = samples.services();
    services.interval = 1ms;
    ProcessMonitor monitor(services);
    QSignalSpy apps(&monitor, &ProcessMonitor::appsChanged);
    samples.allow(3);
    monitor.start();
    while (apps.count() < 3) {
        ASSERT_TRUE(apps.wait(patienceMilliseconds));
    }
    monitor.stop();
    const QList<AppLoad> last = monitor.apps();
    samples.allow(1000);
    // One sample may have been in progress; no other may begin.
    (void)apps.wait(50);
    const int begun = samples.begun();
    (void)apps.wait(50);
    EXPECT_EQ(samples.begun(), begun);
    EXPECT_LE(begun, 4);
    EXPECT_FALSE(last.isEmpty());
    EXPECT_FALSE(monitor.apps().isEmpty()) << "the list stays while the page is hidden";
}

TEST(ProcessMonitor, WaitsFourSecondsBetweenSamplesAndOneAndAHalfAfterAQuit) {
    const ProcessServices services;
    EXPECT_EQ(services.interval, 4s);
    EXPECT_EQ(services.delayAfterQuit, 1500ms);
}

TEST(ProcessMonitor, SamplesAfterAQuit) {
    Samples samples;
    ProcessServices services = samples.services();
    services.delayAfterQuit = 1ms;
    ProcessMonitor monitor(services);
    QSignalSpy apps(&monitor, &ProcessMonitor::appsChanged);
    samples.allow(100);
    AppLoad app;
    app.pids = {77};
    app.starts = {1};
    monitor.quit(app, true);
    EXPECT_EQ(samples.sentSignals(), (std::vector<std::pair<qint32, int>>{{77, 9}}));
    EXPECT_EQ(samples.begun(), 0) << "not before the application had time to go";
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    EXPECT_EQ(samples.begun(), 1);
}

TEST(ProcessMonitor, PublishesAnEmptyListWhenNoneCanBeTaken) {
    int number = 0;
    ProcessServices services;
    services.sample = [&number] { return number++ == 0 ? sampleOf(u"first"_s, 3) : ProcessSample{}; };
    services.cancelSampling = [] {};
    ProcessMonitor monitor(services);
    QSignalSpy apps(&monitor, &ProcessMonitor::appsChanged);
    monitor.refresh();
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    monitor.refresh();
    ASSERT_TRUE(apps.wait(patienceMilliseconds));
    EXPECT_TRUE(monitor.apps().isEmpty());
    EXPECT_EQ(monitor.totalCPU(), 0);
}

TEST(ProcessMonitor, CarriesATotalThatIsNoNumber) {
    ProcessServices services;
    services.sample = [] { return ProcessSample{{}, std::numeric_limits<double>::quiet_NaN()}; };
    services.cancelSampling = [] {};
    ProcessMonitor monitor(services);
    QSignalSpy total(&monitor, &ProcessMonitor::totalCPUChanged);
    monitor.refresh();
    ASSERT_TRUE(total.wait(patienceMilliseconds));
    EXPECT_TRUE(std::isnan(monitor.totalCPU()));
}

TEST(ProcessMonitor, EndsWhileASampleIsUnderWay) {
    Samples samples;
    {
        ProcessMonitor monitor(samples.services());
        monitor.refresh();
        samples.waitUntilOneRuns();
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(samples.begun(), 1);
}

} // namespace Fenwhirl
