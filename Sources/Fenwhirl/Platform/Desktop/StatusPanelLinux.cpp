#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

Qt::WindowFlags statusPanelFlags() {
    return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
}
