#include "Fenwhirl/Processes/ProcessMonitor.h"

#include <utility>

namespace Fenwhirl {

namespace {

ProcessMonitor* sharedMonitor = nullptr;

} // namespace

ProcessMonitor::ProcessMonitor(ProcessServices services, QObject* parent)
    : QObject(parent)
    , services_(std::move(services))
    , queue_("fenwhirl.processes") {
    if (sharedMonitor == nullptr) {
        sharedMonitor = this;
    }
    timer_.setInterval(services_.interval);
    connect(&timer_, &QTimer::timeout, this, &ProcessMonitor::refresh);
}

ProcessMonitor::~ProcessMonitor() {
    if (sharedMonitor == this) {
        sharedMonitor = nullptr;
    }
    services_.cancelSampling();
}

ProcessMonitor* ProcessMonitor::shared() {
    return sharedMonitor;
}

void ProcessMonitor::start() {
    if (timer_.isActive()) {
        return;
    }
    refresh();
    timer_.start();
}

void ProcessMonitor::stop() {
    timer_.stop();
}

void ProcessMonitor::refresh() {
    if (busy_) {
        return;
    }
    busy_ = true;
    queue_.async([this, reply = inbox_.sender()] {
        reply.post([this, sample = services_.sample()] { publish(sample); });
    });
}

void ProcessMonitor::quit(const AppLoad& app, bool force) {
    quitApp(app, force, services_.quit);
    QTimer::singleShot(services_.delayAfterQuit, this, &ProcessMonitor::refresh);
}

void ProcessMonitor::publish(const ProcessSample& sample) {
    const ProcessSample before = std::exchange(sample_, sample);
    busy_ = false;
    if (sample_.apps != before.apps) {
        Q_EMIT appsChanged();
    }
    if (sample_.totalCPU != before.totalCPU) {
        Q_EMIT totalCPUChanged();
    }
}

} // namespace Fenwhirl
