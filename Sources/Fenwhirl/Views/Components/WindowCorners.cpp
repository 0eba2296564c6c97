#include "Fenwhirl/Views/Components/WindowCorners.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

QRegion roundedRegion(QSize size, int radius) {
    const int corner = std::clamp(radius, 0, std::min(size.width(), size.height()) / 2);
    QRegion region(0, corner, size.width(), size.height() - 2 * corner);
    for (int row = 0; row < corner; ++row) {
        // The half-width of the corner's circle in this row, at the side of the row towards the middle.
        const double height = corner - row - 1;
        const double reach = std::sqrt(static_cast<double>(corner) * corner - height * height);
        const int inset = corner - static_cast<int>(std::ceil(reach));
        region += QRect(inset, row, size.width() - 2 * inset, 1);
        region += QRect(inset, size.height() - 1 - row, size.width() - 2 * inset, 1);
    }
    return region;
}

WindowCorners::WindowCorners(QQuickItem* parent) : QQuickItem(parent) {
    connect(this, &WindowCorners::radiusChanged, this, &WindowCorners::cut);
}

void WindowCorners::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change != ItemSceneChange || value.window == nullptr) {
        return;
    }
    connect(value.window, &QWindow::widthChanged, this, &WindowCorners::cut);
    connect(value.window, &QWindow::heightChanged, this, &WindowCorners::cut);
    cut();
}

void WindowCorners::cut() {
    // An empty region removes the mask.
    if (window() != nullptr && QGuiApplication::platformName() == QStringLiteral("xcb")) {
        window()->setMask(radius_ > 0 ? roundedRegion(window()->size(), radius_) : QRegion());
    }
}

} // namespace Fenwhirl
