#include "Fenwhirl/Views/Components/Palette.h"

#include <algorithm>
#include <cmath>

namespace Fenwhirl {

namespace {

constexpr std::size_t at(PaletteColor name) {
    return static_cast<std::size_t>(name);
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

// Multiplies each channel, which keeps the hue. This is what designers mean by "107 % brightness".
QColor brightness(const QColor& color, double factor) {
    const auto scaled = [factor](float channel) {
        return static_cast<float>(std::clamp(static_cast<double>(channel) * factor, 0.0, 1.0));
    };
    return QColor::fromRgbF(scaled(color.redF()), scaled(color.greenF()), scaled(color.blueF()),
                            color.alphaF());
}

QColor mixed(const QColor& from, const QColor& to, double progress) {
    const auto channel = [progress](float a, float b) {
        return static_cast<float>(static_cast<double>(a) +
                                  (static_cast<double>(b) - static_cast<double>(a)) * progress);
    };
    return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                            channel(from.blueF(), to.blueF()), channel(from.alphaF(), to.alphaF()));
}

Palette makePalette(bool dark) {
    const auto choose = [dark](std::uint32_t darkRgb, std::uint32_t lightRgb) {
        return colorFromRgb(dark ? darkRgb : lightRgb);
    };
    const QColor primary = choose(0xFFFFFF, 0x000000);

    Palette colors;
    colors[at(PaletteColor::window)] = choose(0x16181D, 0xF3F4F7);
    colors[at(PaletteColor::sidebar)] = choose(0x1B1E24, 0xE8EBF0);
    colors[at(PaletteColor::card)] = choose(0x1F2229, 0xFFFFFF);
    colors[at(PaletteColor::well)] = choose(0x181B20, 0xECEEF3);
    colors[at(PaletteColor::track)] = choose(0x2B303A, 0xDCE0E7);
    colors[at(PaletteColor::stroke)] = withAlpha(primary, 0.08);
    colors[at(PaletteColor::muted)] = choose(0x9AA3B2, 0x586275);
    colors[at(PaletteColor::secondaryText)] = choose(0xB4BCC9, 0x3F485A);
    colors[at(PaletteColor::accent)] = choose(0x4FC3F7, 0x0A84C6);
    colors[at(PaletteColor::accentSoft)] = choose(0x7FD6FA, 0x066BA3);
    colors[at(PaletteColor::onAccent)] = choose(0x06202C, 0xFFFFFF);
    colors[at(PaletteColor::hot)] = choose(0xFFB454, 0xC2620A);
    colors[at(PaletteColor::good)] = choose(0x5BE49B, 0x1E9E5A);

    const QColor accent = colors[at(PaletteColor::accent)];
    const QColor hot = colors[at(PaletteColor::hot)];
    colors[at(PaletteColor::text)] = withAlpha(primary, 0.85);
    colors[at(PaletteColor::hover)] = withAlpha(primary, 0.05);
    colors[at(PaletteColor::pressed)] = withAlpha(primary, 0.10);
    colors[at(PaletteColor::accentHover)] = brightness(accent, 1.07);
    colors[at(PaletteColor::accentDown)] = brightness(accent, 0.88);
    colors[at(PaletteColor::tint)] = withAlpha(accent, 0.16);
    colors[at(PaletteColor::chartFill)] = withAlpha(accent, 0.14);
    colors[at(PaletteColor::errorFill)] = mixed(colors[at(PaletteColor::card)], hot, 0.10);
    colors[at(PaletteColor::errorStroke)] = withAlpha(hot, 0.32);
    colors[at(PaletteColor::knob)] = choose(0xF2F5F9, 0xFFFFFF);
    colors[at(PaletteColor::knobDisabled)] =
        mixed(colors[at(PaletteColor::card)], colors[at(PaletteColor::knob)], 0.40);
    colors[at(PaletteColor::knobStroke)] = withAlpha(colorFromRgb(0x000000), dark ? 0.0 : 0.16);
    colors[at(PaletteColor::knobShadow)] = withAlpha(colorFromRgb(0x000000), 0.30);
    colors[at(PaletteColor::popup)] = choose(0x23272F, 0xFFFFFF);
    colors[at(PaletteColor::dim)] = withAlpha(choose(0x06080B, 0x141A26), dark ? 0.58 : 0.34);
    colors[at(PaletteColor::shadow)] = withAlpha(choose(0x000000, 0x141E32), dark ? 0.55 : 0.22);
    colors[at(PaletteColor::bubbleShadow)] = withAlpha(choose(0x000000, 0x141E32), dark ? 0.45 : 0.18);
    colors[at(PaletteColor::scrollBar)] = withAlpha(primary, 0.26);
    colors[at(PaletteColor::readingLine)] = withAlpha(primary, 0.26);
    colors[at(PaletteColor::hotLine)] = withAlpha(hot, 0.90);
    return colors;
}

} // namespace

QColor colorFromRgb(std::uint32_t rgb) {
    return QColor::fromRgb(static_cast<int>((rgb >> 16U) & 0xFFU), static_cast<int>((rgb >> 8U) & 0xFFU),
                           static_cast<int>(rgb & 0xFFU));
}

const Palette& palette(bool dark) {
    static const Palette darkColors = makePalette(true);
    static const Palette lightColors = makePalette(false);
    return dark ? darkColors : lightColors;
}

Palette mixedPalette(const Palette& from, const Palette& to, double progress) {
    const double clamped = progress > 0.0 ? std::min(progress, 1.0) : 0.0;
    Palette result;
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = mixed(from[i], to[i], clamped);
    }
    return result;
}

} // namespace Fenwhirl
