#include "Fenwhirl/HelperClient/EmergencyHandBack.h"

#include "Fenwhirl/HelperClient/GuardLink.h"
#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/HelperClient/LastAct.h"
#include "Fenwhirl/Platform/Entry/ExecutablePath.h"

#include <utility>

struct EmergencyHandBack::Private {
    std::string helperPath;
    std::optional<GuardLink> guard;
    HandBack current;
};

EmergencyHandBack::EmergencyHandBack(std::string helperPath, const std::optional<std::string>& guardPath)
    : d_(std::make_unique<Private>()) {
    d_->helperPath = std::move(helperPath);
    LastAct::install();
    if (guardPath)
        d_->guard.emplace(*guardPath);
}

EmergencyHandBack::~EmergencyHandBack() = default;

std::unique_ptr<EmergencyHandBack> EmergencyHandBack::forThisInstallation() {
    const auto executable = executablePath();
    return std::make_unique<EmergencyHandBack>(std::string(HelperClient::helperPath),
                                               executable ? guardPath(*executable) : std::nullopt);
}

void EmergencyHandBack::update(const HandBack& handBack) {
    if (handBack == d_->current)
        return;
    d_->current = handBack;
    LastAct::prepare(d_->helperPath, handBack);
    if (d_->guard)
        d_->guard->send(handBack);
}

void EmergencyHandBack::keepAlive() {
    if (d_->guard)
        d_->guard->keepAlive();
}

void EmergencyHandBack::finish() {
    LastAct::prepare(d_->helperPath, {});
    if (d_->guard)
        d_->guard->finish();
}
