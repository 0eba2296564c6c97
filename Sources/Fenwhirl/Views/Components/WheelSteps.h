#pragma once

#include <QObject>
#include <QPoint>
#include <QtQml/qqmlregistration.h>

// How far a turn of the wheel scrolls a page: QML singleton `WheelSteps`, also available as a plain function.
//
// A notch scrolls as many lines as the system is set to, of 24 points each at the designed text size. A
// touchpad scrolls by what it reports: fractions of notches, or points on platforms that measure the finger
// in points.

namespace Fenwhirl {

// In points, positive towards the end of the page. `pixels` and `angle` (120 per notch) are those of the
// wheel event; `pixelsAreKnown` is false where `pixels` are in units of the driver. Pure; any thread.
[[nodiscard]] double wheelDistance(QPointF pixels, QPointF angle, bool pixelsAreKnown, int linesPerNotch,
                                   double textScale);

class WheelSteps : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // With the system's settings. Main thread.
    Q_INVOKABLE [[nodiscard]] double distance(QPointF pixels, QPointF angle, double textScale) const;
};

} // namespace Fenwhirl
