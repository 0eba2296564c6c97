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
        if (std::abs(std::remainder(step * ratio, 1.0)) < 0.01)
            return step;
    }
    return 1;
}

Theme::Theme(QObject* parent)
    : QObject(parent)
    , m_cornerStep(Fenwhirl::cornerStep(qGuiApp->devicePixelRatio(), drawsInSoftware()))
    , m_colors(palette(true)) {
    m_crossfade.setStartValue(0.0);
    m_crossfade.setEndValue(1.0);
    m_crossfade.setDuration(crossfadeMilliseconds);
    m_crossfade.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_crossfade, &QVariantAnimation::valueChanged, this, [this](const QVariant& progress) {
        show(mixedPalette(m_previous, palette(m_dark), progress.toDouble()));
    });
}

void Theme::setDark(bool dark) {
    // The first choice is made before anything is on screen, so there is nothing to fade from.
    const bool fades = m_chosen && !m_reducedMotion;
    m_chosen = true;
    if (dark == m_dark)
        return;
    m_dark = dark;
    m_crossfade.stop();
    if (fades) {
        m_previous = m_colors;
        m_crossfade.start();
    } else {
        show(palette(m_dark));
    }
    Q_EMIT darkChanged();
}

void Theme::setReducedMotion(bool reduced) {
    if (reduced == m_reducedMotion)
        return;
    m_reducedMotion = reduced;
    if (m_reducedMotion && m_crossfade.state() == QAbstractAnimation::Running) {
        m_crossfade.stop();
        show(palette(m_dark));
    }
    Q_EMIT motionChanged();
}

void Theme::setTextScale(double scale) {
    if (scale == m_textScale)
        return;
    m_textScale = scale;
    Q_EMIT textScaleChanged();
}

double Theme::lineGrowth() const {
    return std::round(lineHeight(13) * (m_textScale - 1.0));
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
    m_colors = colors;
    Q_EMIT colorsChanged();
}

} // namespace Fenwhirl
