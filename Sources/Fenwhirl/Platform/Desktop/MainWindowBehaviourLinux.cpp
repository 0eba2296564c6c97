#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"

#include <QWindow>

namespace MainWindowBehaviour {

void configure(QWindow& /*window*/) {}

void setRegular() {}

void setAccessory() {}

void bringToFront(QWindow& window, const QString& token) {
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // the Wayland plugin takes it from there
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized); // a maximised one stays maximised
    window.setVisible(true);
    window.raise();
    window.requestActivate();
}

} // namespace MainWindowBehaviour
