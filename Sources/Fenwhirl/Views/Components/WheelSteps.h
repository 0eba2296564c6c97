#pragma once

#include <QObject>
#include <QPoint>
#include <QtQml/qqmlregistration.h>

// How far a turn of the wheel scrolls a page: QML singleton `WheelSteps`, and the same as a plain function.
//
// A notch scrolls as many lines as the system says, of 24 points each with texts of the designed size. A
// touchpad scrolls by what it reports: fractions of notches, or points where the platform measures the finger
// in points.

namespace Fenwhirl {

// In points, positive towards the end of the page. `pixels` and `angle` (120 a notch) as an event has them;
// `pixelsAreKnown` is false where the former are a driver's units. Pure; any thread.
[[nodiscard]] double wheelDistance(QPointF pixels, QPointF angle, bool pixelsAreKnown, int linesPerNotch,
                                   double textScale);

class WheelSteps : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    // By the system's settings. Main thread.
    Q_INVOKABLE [[nodiscard]] double distance(QPointF pixels, QPointF angle, double textScale) const;
};

} // namespace Fenwhirl
