#include "Fenwhirl/Platform/Desktop/PanelPlacement.h"

#include <algorithm>

namespace Fenwhirl {

namespace {

constexpr int gap = 8;

// Keeps the whole length inside, with the gap to the edges. If it does not fit, its beginning is visible.
int inside(int position, int length, int low, int high) {
    return std::max(low + gap, std::min(position, high - gap - length));
}

} // namespace

QPoint panelPosition(const QRect& item, QSize panel, const QRect& screen) {
    const int right = screen.x() + screen.width();
    const int bottom = screen.y() + screen.height();
    const bool unknown = item.x() == 0 && item.y() == 0 && item.width() <= 0 && item.height() <= 0;
    if (unknown) {
        return {inside(right - panel.width() - gap, panel.width(), screen.x(), right), screen.y() + gap};
    }
    const int itemBottom = item.y() + std::max(item.height(), 0);
    const int centre = item.x() + std::max(item.width(), 0) / 2;
    // Compares the item's centre with the screen's, both multiplied by two.
    const bool under = item.y() + itemBottom < screen.y() + bottom;
    const int x = inside(centre - panel.width() / 2, panel.width(), screen.x(), right);
    const int y = under ? itemBottom + gap : item.y() - gap - panel.height();
    return {x, inside(y, panel.height(), screen.y(), bottom)};
}

QRect fromBottomLeftOrigin(const QRectF& fromBottom, double firstScreenHeight) {
    const double top = firstScreenHeight - fromBottom.y() - fromBottom.height();
    return QRectF(fromBottom.x(), top, fromBottom.width(), fromBottom.height()).toRect();
}

} // namespace Fenwhirl
