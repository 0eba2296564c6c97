#pragma once

#include <QColor>

#include <array>
#include <cstddef>
#include <cstdint>

// The colours of the interface, in a dark and a light set, as plain values.
//
// The thirteen named surfaces and inks (`window` to `good`) are the product's palette; all are opaque sRGB
// except `stroke`, which is the primary label colour at 8 %. The entries after them complement it: overlays
// for the states of a control, tints of the accent, and what only popups and dialogs need. They are defined
// here rather than in QML so that both appearances are complete by construction: a set is an array with one
// entry for each `PaletteColor`.
//
// Pure functions; any thread.

namespace Fenwhirl {

enum class PaletteColor : std::size_t {
    window,
    sidebar,
    card,
    well,
    track,
    stroke,
    muted,
    secondaryText,
    accent,
    accentSoft,
    onAccent,
    hot,
    good,
    text,         // primary label colour, 85 %
    hover,        // laid over a neutral control under the pointer
    pressed,      // laid over a neutral control held down
    accentHover,  // accent at 107 % brightness
    accentDown,   // accent at 88 % brightness
    tint,         // accent at 16 %: selected sidebar row, secondary button
    chartFill,    // accent at 14 %
    errorFill,    // hot at 10 % over the card
    errorStroke,  // hot at 32 %
    knob,         // of sliders and switches
    knobDisabled, // the knob at 40 % over the card
    knobStroke,   // hairline that keeps a white knob visible on white
    knobShadow,   // under a knob
    popup,        // background of menus
    dim,          // over the window while a dialog is open
    shadow,       // of dialogs and panels
    bubbleShadow, // of the bubbles that show a value
    scrollBar,
    readingLine, // line of the cursor in a chart: primary at 26 %
    hotLine,     // hot at 90 %
    count
};

using Palette = std::array<QColor, static_cast<std::size_t>(PaletteColor::count)>;

// An opaque colour from 0xRRGGBB: red in bits 16 to 23, green in 8 to 15, blue in 0 to 7; higher bits are
// ignored.
[[nodiscard]] QColor colorFromRgb(std::uint32_t rgb);

// The complete set of one appearance.
[[nodiscard]] const Palette& palette(bool dark);

// Interpolates each colour linearly between two sets: `progress` 0 gives `from`, 1 gives `to`. Values outside
// that range are clamped.
[[nodiscard]] Palette mixedPalette(const Palette& from, const Palette& to, double progress);

} // namespace Fenwhirl
