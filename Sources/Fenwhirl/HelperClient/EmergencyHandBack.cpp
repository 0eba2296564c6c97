#include "Fenwhirl/HelperClient/EmergencyHandBack.h"

#include "Fenwhirl/HelperClient/CrashHandBack.h"
#include "Fenwhirl/HelperClient/GuardLink.h"
#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/Platform/Entry/ExecutablePath.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <utility>

namespace Fenwhirl {

struct EmergencyHandBack::Private {
    const std::string helperPath;
    Mutex mutex;
    std::optional<GuardLink> guard FENWHIRL_GUARDED_BY(mutex);
    HandBack current FENWHIRL_GUARDED_BY(mutex);
    bool isFinished FENWHIRL_GUARDED_BY(mutex) = false;
};

EmergencyHandBack::EmergencyHandBack(std::string helperPath, const std::optional<std::string>& guardPath,
                                     GuardStarted guardStarted)
    : d_(new Private{.helperPath = std::move(helperPath), .mutex = {}, .guard = {}, .current = {}}) {
    CrashHandBack::install();
    const MutexLock lock(d_->mutex);
    if (guardPath) {
        d_->guard.emplace(*guardPath, std::move(guardStarted));
    }
}

EmergencyHandBack::~EmergencyHandBack() = default;

std::unique_ptr<EmergencyHandBack> EmergencyHandBack::forThisInstallation(GuardStarted guardStarted) {
    const auto executable = executablePath();
    return std::make_unique<EmergencyHandBack>(
        std::string(HelperClient::helperPath),
        executable ? std::optional(guardPath(*executable)) : std::nullopt, std::move(guardStarted));
}

void EmergencyHandBack::update(const HandBack& handBack) {
    const MutexLock lock(d_->mutex);
    if (d_->isFinished || handBack == d_->current) {
        return;
    }
    d_->current = handBack;
    CrashHandBack::prepare(d_->helperPath, handBack);
    if (d_->guard) {
        d_->guard->send(handBack);
    }
}

void EmergencyHandBack::keepAlive() {
    const MutexLock lock(d_->mutex);
    if (d_->guard) {
        d_->guard->keepAlive();
    }
}

void EmergencyHandBack::finish() {
    const MutexLock lock(d_->mutex);
    d_->isFinished = true;
    CrashHandBack::prepare(d_->helperPath, {});
    if (d_->guard) {
        d_->guard->finish();
    }
}

} // namespace Fenwhirl
