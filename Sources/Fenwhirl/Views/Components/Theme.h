#pragma once

#include "Fenwhirl/Views/Components/Palette.h"

#include <QObject>
#include <QVariantAnimation>
#include <QtGlobal>
#include <QtQml/qqmlregistration.h>

// The appearance with which every component draws: QML singleton `Theme` of Fenwhirl.Components.
//
// The code that creates the windows sets `dark` (from the user's choice or the system's appearance),
// `reducedMotion` and `textScale` (from the system). Every component follows at once, without being
// recreated. A change of `dark` after the first one is a crossfade of 200 ms, during which the colours are
// those of `mixedPalette`; with reduced motion it is instant.
//
// The durations are in milliseconds and are all 0 with reduced motion, so animations need no condition of
// their own.
//
// `textScale` is the factor by which every text is larger than designed, and with it the heights and columns
// that contain texts. Symbols that stand before a text are larger by `symbolScale`: half as much, which
// keeps them in proportion and leaves the room to the text. `symbolSize` is the width and height of most of
// them, and the width of their column. Sizes in the QML files are those at a factor of 1, and so are the
// argument and the result of `lineHeight`.
//
// Radii must be multiples of `cornerStep` to be drawn well. It is 1 unless the function cornerStep() returns
// more.
//
// One instance per QML engine, owned by it; main thread only.

namespace Fenwhirl {

// Qt's software renderer draws the corners of a rectangle as images of whole pixels. On a screen of `ratio`
// pixels per point, the corners of a radius that is not a whole number of pixels do not meet the edges.
// Returns the smallest radius, of up to 4 points, that is a whole number of pixels; 1 if there is none, and
// for other renderers.
[[nodiscard]] int cornerStep(double ratio, bool software);

class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(bool dark READ dark WRITE setDark NOTIFY darkChanged FINAL)
    Q_PROPERTY(bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY motionChanged FINAL)
    Q_PROPERTY(double textScale READ textScale WRITE setTextScale NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(double symbolScale READ symbolScale NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(int symbolSize READ symbolSize NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(double lineGrowth READ lineGrowth NOTIFY textScaleChanged FINAL)
    Q_PROPERTY(int cornerStep READ cornerStep CONSTANT FINAL)

    Q_PROPERTY(QColor window READ window NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor sidebar READ sidebar NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor card READ card NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor well READ well NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor track READ track NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor stroke READ stroke NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor muted READ muted NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor secondaryText READ secondaryText NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor accent READ accent NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor accentSoft READ accentSoft NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor hot READ hot NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor good READ good NOTIFY colorsChanged FINAL)

    Q_PROPERTY(QColor text READ text NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor hover READ hover NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor pressed READ pressed NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor accentHover READ accentHover NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor accentDown READ accentDown NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor tint READ tint NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor chartFill READ chartFill NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor errorFill READ errorFill NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor errorStroke READ errorStroke NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor knob READ knob NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor knobDisabled READ knobDisabled NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor knobStroke READ knobStroke NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor knobShadow READ knobShadow NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor popup READ popup NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor dim READ dim NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor shadow READ shadow NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor bubbleShadow READ bubbleShadow NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor scrollBar READ scrollBar NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor readingLine READ readingLine NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor hotLine READ hotLine NOTIFY colorsChanged FINAL)

    Q_PROPERTY(int pressDuration READ pressDuration NOTIFY motionChanged FINAL)
    Q_PROPERTY(int hoverDuration READ hoverDuration NOTIFY motionChanged FINAL)
    Q_PROPERTY(int pageDuration READ pageDuration NOTIFY motionChanged FINAL)
    Q_PROPERTY(int switchDuration READ switchDuration NOTIFY motionChanged FINAL)
    Q_PROPERTY(int pillDuration READ pillDuration NOTIFY motionChanged FINAL)
    Q_PROPERTY(int popupDuration READ popupDuration NOTIFY motionChanged FINAL)
    Q_PROPERTY(int bannerDuration READ bannerDuration NOTIFY motionChanged FINAL)
    Q_PROPERTY(int gaugeDuration READ gaugeDuration NOTIFY motionChanged FINAL)

public:
    explicit Theme(QObject* parent = nullptr);

    [[nodiscard]] bool dark() const { return dark_; }

    void setDark(bool dark);

    [[nodiscard]] bool reducedMotion() const { return reducedMotion_; }

    void setReducedMotion(bool reduced);

    [[nodiscard]] double textScale() const { return textScale_; }

    // `scale` must be above 0.
    void setTextScale(double scale);

    [[nodiscard]] double symbolScale() const { return 1.0 + (textScale_ - 1.0) / 2.0; }

    [[nodiscard]] int symbolSize() const { return qRound(18 * symbolScale()); }

    // By how much one line of a control's text, and so the control, is higher than designed.
    [[nodiscard]] double lineGrowth() const;

    [[nodiscard]] QColor window() const { return color(PaletteColor::window); }

    [[nodiscard]] QColor sidebar() const { return color(PaletteColor::sidebar); }

    [[nodiscard]] QColor card() const { return color(PaletteColor::card); }

    [[nodiscard]] QColor well() const { return color(PaletteColor::well); }

    [[nodiscard]] QColor track() const { return color(PaletteColor::track); }

    [[nodiscard]] QColor stroke() const { return color(PaletteColor::stroke); }

    [[nodiscard]] QColor muted() const { return color(PaletteColor::muted); }

    [[nodiscard]] QColor secondaryText() const { return color(PaletteColor::secondaryText); }

    [[nodiscard]] QColor accent() const { return color(PaletteColor::accent); }

    [[nodiscard]] QColor accentSoft() const { return color(PaletteColor::accentSoft); }

    [[nodiscard]] QColor onAccent() const { return color(PaletteColor::onAccent); }

    [[nodiscard]] QColor hot() const { return color(PaletteColor::hot); }

    [[nodiscard]] QColor good() const { return color(PaletteColor::good); }

    [[nodiscard]] QColor text() const { return color(PaletteColor::text); }

    [[nodiscard]] QColor hover() const { return color(PaletteColor::hover); }

    [[nodiscard]] QColor pressed() const { return color(PaletteColor::pressed); }

    [[nodiscard]] QColor accentHover() const { return color(PaletteColor::accentHover); }

    [[nodiscard]] QColor accentDown() const { return color(PaletteColor::accentDown); }

    [[nodiscard]] QColor tint() const { return color(PaletteColor::tint); }

    [[nodiscard]] QColor chartFill() const { return color(PaletteColor::chartFill); }

    [[nodiscard]] QColor errorFill() const { return color(PaletteColor::errorFill); }

    [[nodiscard]] QColor errorStroke() const { return color(PaletteColor::errorStroke); }

    [[nodiscard]] QColor knob() const { return color(PaletteColor::knob); }

    [[nodiscard]] QColor knobDisabled() const { return color(PaletteColor::knobDisabled); }

    [[nodiscard]] QColor knobStroke() const { return color(PaletteColor::knobStroke); }

    [[nodiscard]] QColor knobShadow() const { return color(PaletteColor::knobShadow); }

    [[nodiscard]] QColor popup() const { return color(PaletteColor::popup); }

    [[nodiscard]] QColor dim() const { return color(PaletteColor::dim); }

    [[nodiscard]] QColor shadow() const { return color(PaletteColor::shadow); }

    [[nodiscard]] QColor bubbleShadow() const { return color(PaletteColor::bubbleShadow); }

    [[nodiscard]] QColor scrollBar() const { return color(PaletteColor::scrollBar); }

    [[nodiscard]] QColor readingLine() const { return color(PaletteColor::readingLine); }

    [[nodiscard]] QColor hotLine() const { return color(PaletteColor::hotLine); }

    [[nodiscard]] int pressDuration() const { return duration(80); }

    [[nodiscard]] int hoverDuration() const { return duration(120); }

    [[nodiscard]] int pageDuration() const { return duration(140); }

    [[nodiscard]] int switchDuration() const { return duration(160); }

    [[nodiscard]] int pillDuration() const { return duration(180); }

    [[nodiscard]] int popupDuration() const { return duration(180); }

    [[nodiscard]] int bannerDuration() const { return duration(200); }

    [[nodiscard]] int gaugeDuration() const { return duration(350); }

    [[nodiscard]] int cornerStep() const { return cornerStep_; }

    // The line height for a text size, both in pixels as designed.
    Q_INVOKABLE [[nodiscard]] int lineHeight(int pixelSize) const;

Q_SIGNALS:
    void darkChanged();
    void colorsChanged();
    void motionChanged();
    void textScaleChanged();

private:
    [[nodiscard]] QColor color(PaletteColor name) const { return colors_[static_cast<std::size_t>(name)]; }

    [[nodiscard]] int duration(int milliseconds) const { return reducedMotion_ ? 0 : milliseconds; }

    void show(const Palette& colors);

    bool dark_ = true;
    bool chosen_ = false; // whether `dark` has been set yet
    bool reducedMotion_ = false;
    double textScale_ = 1.0;
    int cornerStep_ = 1;
    Palette colors_;
    Palette previous_; // the colours at which the running crossfade began
    QVariantAnimation crossfade_;
};

} // namespace Fenwhirl
