// Whatever hangs around the program, its main thread must not wait for it.

#include "Fenwhirl/HelperClient/HelperInstallation.h"
#include "Fenwhirl/Monitoring/MonitorHarness.h"
#include "Fenwhirl/Platform/Processes/ProcessTable.h"
#include "Fenwhirl/Platform/Toolkit/ChildProcess.h"
#include "Fenwhirl/Processes/ProcessMonitor.h"
#include "Support/MainThreadPauses.h"
#include "Support/TemporaryFolder.h"
#include "Support/WaitUntil.h"

#include <QSignalSpy>

#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

namespace Fenwhirl {

namespace {

// Long enough to be measured if the main thread waits for it.
constexpr const char* hangingProgram = "#!/bin/sh\nexec sleep 0.4\n";

class Responsiveness : public testing::Test, protected MonitorHarness {
protected:
    std::string writeProgram(const std::string& name) {
        const std::string path = folder.write(name, hangingProgram);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    // A monitor whose helper is a real program that hangs, as does every request to the administrator.
    std::unique_ptr<Monitor> monitorWithHangingHelper() {
        const std::string program = writeProgram("helper");
        const auto installation = std::make_shared<HelperInstallation>(HelperInstallation::Surroundings{
            .helperPath = program, .executablePath = {}, .runAsAdministrator = {}, .group = {}});
        const auto ask = [program](const std::string& command) {
            const std::array<std::string, 1> arguments = {command};
            return runChild(program, arguments, ChildOutput::discard, ChildEnvironment::neutral).has_value();
        };
        MonitorServices slow = services();
        slow.helper.isInstalled = [] { return true; };
        slow.helper.run = [installation](const auto& arguments) { return installation->run(arguments); };
        slow.helper.output = [installation](const auto& arguments) {
            return installation->output(arguments);
        };
        slow.helper.installedVersion = [program, ask]() -> std::optional<std::string> {
            return ask("version") ? std::optional<std::string>("3") : std::nullopt;
        };
        slow.helper.runAsAdministrator = ask;
        slow.helper.install = [ask] { return ask("install"); };
        auto monitor = std::make_unique<Monitor>(slow);
        QSignalSpy polled(monitor.get(), &Monitor::polled);
        monitor->start();
        EXPECT_TRUE(waitUntil([&] { return polled.count() == 1; }));
        return monitor;
    }

    TemporaryFolder folder;
};

TEST_F(Responsiveness, AHangingHelperDoesNotBlockTheMainThread) {
    const auto monitor = monitorWithHangingHelper();
    int polls = 0;
    QObject::connect(monitor.get(), &Monitor::polled, monitor.get(), [&polls] { ++polls; });
    const auto pause = longestPause(
        [&] {
            polls = 0;
            advance(20);
            monitor->apply(Preset::game);
            monitor->tick();
            monitor->setSetting(0, constant(3000));
            monitor->tick();
        },
        [&] { return polls >= 1; }); // the second poll may have been merged into the first
    EXPECT_LT(pause, acceptablePause);
}

TEST_F(Responsiveness, ASlowAdministratorDoesNotBlockTheMainThread) {
    const auto monitor = monitorWithHangingHelper();
    const auto pause =
        longestPause([&] { monitor->installHelper(); }, [&] { return !monitor->isInstalling(); });
    EXPECT_LT(pause, acceptablePause);
}

TEST_F(Responsiveness, RemovalResetAndReportDoNotBlockTheMainThread) {
    const auto monitor = monitorWithHangingHelper();
    int reports = 0;
    const auto pause = longestPause(
        [&] {
            reports = 0;
            monitor->uninstallHelper();
            monitor->resetToAutomatic();
            monitor->makeDiagnosticReport(true, [&](const QString&) { ++reports; });
            monitor->tick();
        },
        [&] { return reports == 1; });
    EXPECT_LT(pause, acceptablePause);
}

TEST_F(Responsiveness, AHangingProcessListingDoesNotBlockTheMainThread) {
    const auto table = std::shared_ptr<ProcessTable>(
        openProcessTable({.tool = writeProgram("ps"), .firstInterval = std::chrono::milliseconds(0)}));
    ProcessServices services;
    int samples = 0;
    services.sample = [&] {
        static_cast<void>(table->listing());
        return ProcessSample{.apps = {}, .totalCPU = static_cast<double>(++samples)};
    };
    services.cancelSampling = [table] { table->cancel(); };
    ProcessMonitor monitor(services);
    double before = 0;
    const auto pause = longestPause(
        [&] {
            before = monitor.totalCPU();
            monitor.start();
            monitor.refresh();
        },
        [&] { return monitor.totalCPU() > before; });
    EXPECT_LT(pause, acceptablePause);
}

// Checks the measurement itself: a main thread that does wait is detected in every attempt.
TEST_F(Responsiveness, ABlockedMainThreadIsDetected) {
    const std::string program = writeProgram("helper");
    const auto pause = longestPause(
        [&] { static_cast<void>(runChild(program, {}, ChildOutput::discard, ChildEnvironment::neutral)); },
        [] { return true; }, 2);
    EXPECT_GE(pause, std::chrono::milliseconds(400));
}

} // namespace

} // namespace Fenwhirl
