// Where the status item's panel opens: at the item, inside the screen. Pure.

#pragma once

#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSize>

// `item` is the item's place as StatusItem reports it; `screen` what the screen leaves free of bars, in the
// same points. The panel goes under an item in the upper half of the screen and above one in the lower half,
// centred on it, a small gap away, and never beyond the screen. Without a place it goes into the upper right
// corner.
[[nodiscard]] QPoint panelPosition(const QRect& item, QSize panel, const QRect& screen);

// A place as macOS tells it, counted from the bottom of its first screen (`firstScreenHeight` points high)
// upwards, as Qt tells it, from that screen's top downwards. Right for places on other screens too.
[[nodiscard]] QRect placeFromTop(const QRectF& fromBottom, double firstScreenHeight);
