#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

Qt::WindowFlags statusPanelFlags() {
    return Qt::Popup | Qt::FramelessWindowHint;
}

void showStatusPanel(QWindow& window, const QString& /*token*/) {
    window.show();
    window.raise();
    window.requestActivate();
}

void grabPresses(QWindow& window) {
    window.setMouseGrabEnabled(true);
}

bool focusFollowsPointer() {
    return false;
}

PanelSurroundings panelSurroundings() {
    return PanelSurroundings::translucent;
}

void declareShadow(QWindow& /*window*/, const QMargins& /*margins*/) {}
