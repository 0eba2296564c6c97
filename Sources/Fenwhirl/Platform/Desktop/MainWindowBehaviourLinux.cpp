#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"

#include <QWindow>

namespace Fenwhirl::MainWindowBehaviour {

void configure(QWindow& /*window*/) {}

void setRegular() {}

void setAccessory() {}

void bringToFront(QWindow& window, const QString& token) {
    if (!token.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // Qt's Wayland plugin reads it from the environment
    }
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized); // keeps a maximised state
    window.setVisible(true);
    window.raise();
    window.requestActivate();
}

} // namespace Fenwhirl::MainWindowBehaviour
