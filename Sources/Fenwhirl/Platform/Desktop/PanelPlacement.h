// Computes where the status item's panel opens: at the item, inside the screen. Pure.

#pragma once

#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSize>

namespace Fenwhirl {

// `item` is the item's geometry as StatusItem reports it; `screen` is the part of the screen that is free of
// bars, in the same points. The panel goes below an item in the upper half of the screen and above one in the
// lower half. It is centred on the item, a small gap away, and never extends beyond the screen. Without an
// item geometry it goes to the upper right corner.
[[nodiscard]] QPoint panelPosition(const QRect& item, QSize panel, const QRect& screen);

// Converts a rectangle from macOS coordinates to Qt's. macOS counts upwards from the bottom of its first
// screen, which is `firstScreenHeight` points high; Qt counts downwards from that screen's top. Correct for
// rectangles on other screens, too.
[[nodiscard]] QRect fromBottomLeftOrigin(const QRectF& fromBottom, double firstScreenHeight);

} // namespace Fenwhirl
