#include "Fenwhirl/Views/ControlView.h"

namespace Fenwhirl {

ControlView::ControlView(Monitor& monitor, QObject* parent) : LiveView(parent), monitor_(monitor) {}

void ControlView::connectModels() {
    connect(&monitor_, &Monitor::helperInstalledChanged, this, &ControlView::changed);
    connect(&monitor_, &Monitor::helperOutdatedChanged, this, &ControlView::changed);
    connect(&monitor_, &Monitor::needsHelperChanged, this, &ControlView::changed);
    connect(&monitor_, &Monitor::isInstallingChanged, this, &ControlView::changed);
    connect(&monitor_, &Monitor::controlErrorChanged, this, &ControlView::changed);
}

void ControlView::disconnectModels() {
    monitor_.disconnect(this);
}

} // namespace Fenwhirl
