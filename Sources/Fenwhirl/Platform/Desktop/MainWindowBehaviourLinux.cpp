#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"

#include <QWindow>

namespace MainWindowBehaviour {

void configure(QWindow& /*window*/) {}

void setRegular() {}

void setAccessory() {}

void bringToFront(QWindow& window, const QString& token) {
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // the Wayland plugin takes it from there
    if (window.windowStates().testFlag(Qt::WindowMinimized))
        window.showNormal();
    else
        window.show();
    window.raise();
    window.requestActivate();
}

} // namespace MainWindowBehaviour
