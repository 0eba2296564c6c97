#include "Fenwhirl/Processes/AppQuitting.h"

#include <algorithm>
#include <csignal>
#include <vector>

namespace Fenwhirl {

namespace {

struct Target {
    qint32 pid;
    ProcessStart start;
};

std::vector<Target> targetsOf(const AppLoad& app, const QuitServices& services) {
    std::vector<Target> targets;
    for (qsizetype i = 0; i < std::min(app.pids.size(), app.starts.size()); ++i) {
        const qint32 pid = app.pids[i];
        const std::optional<ProcessStart>& listed = app.starts[i];
        if (pid > 0 && pid != services.ownPid && listed && services.startOf(pid) == listed) {
            targets.push_back({pid, *listed});
        }
    }
    return targets;
}

} // namespace

void quitApp(const AppLoad& app, bool force, const QuitServices& services) {
    const std::vector<Target> targets = targetsOf(app, services);
    bool foundApplication = false;
    for (const Target& target : targets) {
        foundApplication = services.askApplication(target.pid, force) || foundApplication;
    }
    if (foundApplication) {
        return;
    }
    for (const Target& target : targets) {
        services.sendSignal(target.pid, target.start, force ? SIGKILL : SIGTERM);
    }
}

} // namespace Fenwhirl
