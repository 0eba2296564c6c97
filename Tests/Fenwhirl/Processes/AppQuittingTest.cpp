#include "Fenwhirl/Processes/AppQuitting.h"

#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <tuple>
#include <vector>

namespace Fenwhirl {

namespace {

// The processes of a machine as the quitting code sees them, with a record of what was done to them.
struct World {
    std::map<qint32, ProcessStart> running;
    std::set<qint32> applications;
    std::vector<std::pair<qint32, bool>> asked;
    std::vector<std::tuple<qint32, ProcessStart, int>> signalled;

    [[nodiscard]] QuitServices services(qint32 ownPid) {
        QuitServices services;
        services.ownPid = ownPid;
        services.startOf = [this](qint32 pid) {
            const auto found = running.find(pid);
            return found == running.end() ? std::nullopt : std::optional(found->second);
        };
        services.askApplication = [this](qint32 pid, bool force) {
            if (!applications.contains(pid)) {
                return false;
            }
            asked.emplace_back(pid, force);
            return true;
        };
        services.sendSignal = [this](qint32 pid, ProcessStart start, int signal) {
            signalled.emplace_back(pid, start, signal);
        };
        return services;
    }
};

AppLoad appOf(const QList<qint32>& pids) {
    AppLoad app;
    app.pids = pids;
    for (const qint32 pid : pids) {
        app.starts.append(static_cast<ProcessStart>(pid) + 1000);
    }
    return app;
}

World worldOf(const QList<qint32>& pids) {
    World world;
    for (const qint32 pid : pids) {
        world.running[pid] = static_cast<ProcessStart>(pid) + 1000;
    }
    return world;
}

using Signals = std::vector<std::tuple<qint32, ProcessStart, int>>;
using Asked = std::vector<std::pair<qint32, bool>>;

} // namespace

TEST(AppQuitting, TerminatesProcessesWithoutAnApplicationBySignal) {
    World world = worldOf({5, 6});
    quitApp(appOf({5, 6}), false, world.services(1));
    EXPECT_EQ(world.signalled, (Signals{{5, 1005, SIGTERM}, {6, 1006, SIGTERM}}));
    EXPECT_TRUE(world.asked.empty());
}

TEST(AppQuitting, KillsThemWhenForced) {
    World world = worldOf({5});
    quitApp(appOf({5}), true, world.services(1));
    EXPECT_EQ(world.signalled, (Signals{{5, 1005, SIGKILL}}));
}

TEST(AppQuitting, AsksApplicationsInOrderAndSendsNoSignalThen) {
    World world = worldOf({5, 6, 7});
    world.applications = {5, 7};
    quitApp(appOf({7, 6, 5}), false, world.services(1));
    EXPECT_EQ(world.asked, (Asked{{7, false}, {5, false}}));
    EXPECT_TRUE(world.signalled.empty());
}

TEST(AppQuitting, ForcesApplicationsWhenForced) {
    World world = worldOf({5});
    world.applications = {5};
    quitApp(appOf({5}), true, world.services(1));
    EXPECT_EQ(world.asked, (Asked{{5, true}}));
    EXPECT_TRUE(world.signalled.empty());
}

TEST(AppQuitting, NeverTouchesGroupsOfProcesses) {
    for (const bool applications : {false, true}) {
        World world = worldOf({-5, -1, 0, 5});
        if (applications) {
            world.applications = {-5, -1, 0};
        }
        quitApp(appOf({-5, -1, 0, 5}), true, world.services(1));
        EXPECT_EQ(world.signalled, (Signals{{5, 1005, SIGKILL}}));
        EXPECT_TRUE(world.asked.empty());
    }
}

TEST(AppQuitting, NeverTouchesItself) {
    for (const bool application : {false, true}) {
        World world = worldOf({5, 6});
        if (application) {
            world.applications = {5};
        }
        quitApp(appOf({5, 6}), false, world.services(5));
        EXPECT_EQ(world.signalled, (Signals{{6, 1006, SIGTERM}}));
        EXPECT_TRUE(world.asked.empty());
    }
}

TEST(AppQuitting, SparesAProcessThatHasTheIdentifierOfAnEndedOne) {
    for (const bool application : {false, true}) {
        World world = worldOf({5, 6});
        world.running[5] = 2000;
        if (application) {
            world.applications = {5};
        }
        quitApp(appOf({5, 6}), true, world.services(1));
        EXPECT_EQ(world.signalled, (Signals{{6, 1006, SIGKILL}}));
        EXPECT_TRUE(world.asked.empty());
    }
}

TEST(AppQuitting, PassesOverEndedProcesses) {
    World world = worldOf({6});
    quitApp(appOf({5, 6}), false, world.services(1));
    EXPECT_EQ(world.signalled, (Signals{{6, 1006, SIGTERM}}));
}

TEST(AppQuitting, PassesOverProcessesThatHadEndedWhenListed) {
    World world = worldOf({5, 6});
    AppLoad app = appOf({5, 6});
    app.starts[0] = std::nullopt;
    quitApp(app, false, world.services(1));
    EXPECT_EQ(world.signalled, (Signals{{6, 1006, SIGTERM}}));
}

TEST(AppQuitting, DoesNotLookWhetherThePageProtectsTheEntry) {
    World world = worldOf({5});
    AppLoad app = appOf({5});
    app.canQuit = false;
    quitApp(app, false, world.services(1));
    EXPECT_EQ(world.signalled.size(), 1U);
}

} // namespace Fenwhirl
