#include "Fenwhirl/Views/Components/Theme.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <cmath>

namespace Fenwhirl {

namespace {

constexpr int crossfadeMilliseconds = 200;

// The renderer may be chosen by the program or in the environment.
bool drawsInSoftware() {
    return QQuickWindow::graphicsApi() == QSGRendererInterface::Software ||
           QQuickWindow::sceneGraphBackend() == QStringLiteral("software") ||
           qEnvironmentVariable("QT_QUICK_BACKEND") == QStringLiteral("software");
}

} // namespace

int cornerStep(double ratio, bool software) {
    constexpr int largest = 4;
    for (int step = 1; software && step <= largest; ++step) {
        if (std::abs(std::remainder(step * ratio, 1.0)) < 0.01) {
            return step;
        }
    }
    return 1;
}

Theme::Theme(QObject* parent)
    : QObject(parent)
    , cornerStep_(Fenwhirl::cornerStep(qGuiApp->devicePixelRatio(), drawsInSoftware()))
    , colors_(palette(true)) {
    crossfade_.setStartValue(0.0);
    crossfade_.setEndValue(1.0);
    crossfade_.setDuration(crossfadeMilliseconds);
    crossfade_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&crossfade_, &QVariantAnimation::valueChanged, this, [this](const QVariant& progress) {
        show(mixedPalette(previous_, palette(dark_), progress.toDouble()));
    });
}

void Theme::setDark(bool dark) {
    // The first choice is made before anything is on screen, so there is nothing to fade from.
    const bool fades = chosen_ && !reducedMotion_;
    chosen_ = true;
    if (dark == dark_) {
        return;
    }
    dark_ = dark;
    crossfade_.stop();
    if (fades) {
        previous_ = colors_;
        crossfade_.start();
    } else {
        show(palette(dark_));
    }
    Q_EMIT darkChanged();
}

void Theme::setReducedMotion(bool reduced) {
    if (reduced == reducedMotion_) {
        return;
    }
    reducedMotion_ = reduced;
    if (reducedMotion_ && crossfade_.state() == QAbstractAnimation::Running) {
        crossfade_.stop();
        show(palette(dark_));
    }
    Q_EMIT motionChanged();
}

void Theme::setTextScale(double scale) {
    if (scale == textScale_) {
        return;
    }
    textScale_ = scale;
    Q_EMIT textScaleChanged();
}

double Theme::lineGrowth() const {
    return std::round(lineHeight(13) * (textScale_ - 1.0));
}

int Theme::lineHeight(int pixelSize) const {
    switch (pixelSize) {
    case 30:
        return 34;
    case 26:
        return 32;
    case 22:
    case 18:
        return 28;
    case 15:
        return 20;
    case 14:
    case 13:
        return 18;
    case 12:
        return 16;
    case 11:
        return 14;
    default:
        return pixelSize * 4 / 3;
    }
}

void Theme::show(const Palette& colors) {
    colors_ = colors;
    Q_EMIT colorsChanged();
}

} // namespace Fenwhirl
