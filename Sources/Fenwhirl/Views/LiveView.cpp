#include "Fenwhirl/Views/LiveView.h"

namespace Fenwhirl {

void LiveView::setAwake(bool awake) {
    if (awake == awake_) {
        return;
    }
    awake_ = awake;
    if (awake) {
        connectModels();
        refresh();
    } else {
        disconnectModels();
    }
}

void LiveView::retranslate() {
    if (awake_) {
        refresh();
    }
}

} // namespace Fenwhirl
