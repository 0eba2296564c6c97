#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

Qt::WindowFlags statusPanelFlags() {
    return Qt::Popup | Qt::FramelessWindowHint;
}

PanelSurroundings panelSurroundings() {
    return PanelSurroundings::translucent;
}

void declareShadow(QWindow& /*window*/, const QMargins& /*margins*/) {}
