#include "Fenwhirl/Views/ViewModels.h"

namespace Fenwhirl {

ViewModels::ViewModels(Monitor& monitor, ProcessMonitor& processes, const ViewServices& services,
                       QObject* parent)
    : QObject(parent)
    , openMain_(services.openMain)
    , quit_(services.quit)
    , machine_(monitor, services.computerName)
    , control_(monitor)
    , presets_(monitor)
    , pages_(monitor)
    , preferences_(monitor, services.notify)
    , report_(monitor, services.saveReport)
    , apps_(processes, services.applicationIcon) {}

void ViewModels::setAwake(bool awake) {
    machine_.setAwake(awake);
    control_.setAwake(awake);
    preferences_.setAwake(awake);
    apps_.setAwake(awake);
}

void ViewModels::retranslate() {
    machine_.retranslate();
    preferences_.retranslate();
    apps_.retranslate();
    presets_.retranslate();
    pages_.retranslate();
}

} // namespace Fenwhirl
