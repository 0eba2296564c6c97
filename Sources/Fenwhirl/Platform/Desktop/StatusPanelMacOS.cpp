#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

Qt::WindowFlags statusPanelFlags() {
    return Qt::Popup | Qt::FramelessWindowHint;
}
