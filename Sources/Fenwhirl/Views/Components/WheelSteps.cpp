#include "Fenwhirl/Views/Components/WheelSteps.h"

#include <QGuiApplication>
#include <QStyleHints>

namespace Fenwhirl {

namespace {

constexpr double anglePerNotch = 120.0;
constexpr double linePoints = 24.0;

} // namespace

double wheelDistance(QPointF pixels, QPointF angle, bool pixelsAreKnown, int linesPerNotch,
                     double textScale) {
    if (pixelsAreKnown && pixels.y() != 0.0) {
        return -pixels.y();
    }
    return -angle.y() / anglePerNotch * linesPerNotch * linePoints * textScale;
}

double WheelSteps::distance(QPointF pixels, QPointF angle, double textScale) const {
    // Under X11 a mouse with notches reports "pixels", too, in units of its driver.
    const bool pixelsAreKnown = QGuiApplication::platformName() != QLatin1String("xcb");
    return wheelDistance(pixels, angle, pixelsAreKnown, QGuiApplication::styleHints()->wheelScrollLines(),
                         textScale);
}

} // namespace Fenwhirl
