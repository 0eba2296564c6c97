#include "Fenwhirl/Views/Components/Palette.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

QColor color(const Palette& colors, PaletteColor name) {
    return colors[static_cast<std::size_t>(name)];
}

// The contrast ratio of two opaque colours as the Web Content Accessibility Guidelines define it: 1 to 21.
double contrast(const QColor& a, const QColor& b) {
    const auto luminance = [](const QColor& c) {
        const auto linear = [](double v) {
            return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(static_cast<double>(c.redF())) +
               0.7152 * linear(static_cast<double>(c.greenF())) +
               0.0722 * linear(static_cast<double>(c.blueF()));
    };
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

TEST(Palette, ReadsRedGreenAndBlueFromTwentyFourBits) {
    EXPECT_EQ(colorFromRgb(0x4FC3F7), QColor(0x4F, 0xC3, 0xF7));
    EXPECT_EQ(colorFromRgb(0xFF4FC3F7), QColor(0x4F, 0xC3, 0xF7)) << "bits above the 24 mean nothing";
}

TEST(Palette, HasTheThirteenColorsOfBothAppearances) {
    struct Row {
        PaletteColor name;
        const char* dark;
        const char* light;
    };

    const Row rows[] = {
        {PaletteColor::window, "#16181D", "#F3F4F7"},        {PaletteColor::sidebar, "#1B1E24", "#E8EBF0"},
        {PaletteColor::card, "#1F2229", "#FFFFFF"},          {PaletteColor::well, "#181B20", "#ECEEF3"},
        {PaletteColor::track, "#2B303A", "#DCE0E7"},         {PaletteColor::muted, "#9AA3B2", "#586275"},
        {PaletteColor::secondaryText, "#B4BCC9", "#3F485A"}, {PaletteColor::accent, "#4FC3F7", "#0A84C6"},
        {PaletteColor::accentSoft, "#7FD6FA", "#066BA3"},    {PaletteColor::onAccent, "#06202C", "#FFFFFF"},
        {PaletteColor::hot, "#FFB454", "#C2620A"},           {PaletteColor::good, "#5BE49B", "#1E9E5A"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(color(palette(true), row.name), QColor(QLatin1String(row.dark))) << row.dark;
        EXPECT_EQ(color(palette(false), row.name), QColor(QLatin1String(row.light))) << row.light;
        EXPECT_EQ(color(palette(true), row.name).alpha(), 255);
    }
    const QColor darkStroke = color(palette(true), PaletteColor::stroke);
    EXPECT_EQ(darkStroke.rgb() & 0xFFFFFFU, 0xFFFFFFU);
    EXPECT_NEAR(static_cast<double>(darkStroke.alphaF()), 0.08, 0.001);
    const QColor lightStroke = color(palette(false), PaletteColor::stroke);
    EXPECT_EQ(lightStroke.rgb() & 0xFFFFFFU, 0x000000U);
    EXPECT_NEAR(static_cast<double>(lightStroke.alphaF()), 0.08, 0.001);
}

TEST(Palette, BothSetsAreComplete) {
    for (const bool dark : {true, false}) {
        for (const QColor& entry : palette(dark)) {
            EXPECT_TRUE(entry.isValid());
        }
    }
}

TEST(Palette, MixingRunsFromOneSetToTheOther) {
    const Palette& dark = palette(true);
    const Palette& light = palette(false);
    EXPECT_EQ(color(mixedPalette(dark, light, 0.0), PaletteColor::card), color(dark, PaletteColor::card));
    EXPECT_EQ(color(mixedPalette(dark, light, 1.0), PaletteColor::card).name(),
              color(light, PaletteColor::card).name());
    EXPECT_EQ(color(mixedPalette(dark, light, 7.0), PaletteColor::card).name(),
              color(light, PaletteColor::card).name());
    const QColor half = color(mixedPalette(dark, light, 0.5), PaletteColor::card);
    EXPECT_GT(half.red(), color(dark, PaletteColor::card).red());
    EXPECT_LT(half.red(), color(light, PaletteColor::card).red());
}

// The visible result of a translucent colour on an opaque one.
QColor laidOver(const QColor& ground, const QColor& ink) {
    const auto mixed = [&ink](float under, float over) { return under + (over - under) * ink.alphaF(); };
    return QColor::fromRgbF(mixed(ground.redF(), ink.redF()), mixed(ground.greenF(), ink.greenF()),
                            mixed(ground.blueF(), ink.blueF()));
}

TEST(Palette, TextIsReadableOnEverySurfaceItStandsOn) {
    for (const bool dark : {true, false}) {
        const Palette& colors = palette(dark);
        for (const PaletteColor surface : {PaletteColor::window, PaletteColor::sidebar, PaletteColor::card,
                                           PaletteColor::well, PaletteColor::popup}) {
            const QColor ground = color(colors, surface);
            EXPECT_GE(contrast(laidOver(ground, color(colors, PaletteColor::text)), ground), 11.0);
            EXPECT_GE(contrast(color(colors, PaletteColor::secondaryText), ground), 4.5);
            EXPECT_GE(contrast(color(colors, PaletteColor::muted), ground), 4.5);
        }
        const QColor error = color(colors, PaletteColor::errorFill);
        EXPECT_GE(contrast(laidOver(error, color(colors, PaletteColor::text)), error), 9.5);
    }
}

// The palette is fixed. Where its light accent colours text, the contrast is slightly below 4.5; such text is
// semibold or repeats what is said elsewhere. The contrast must not become lower.
TEST(Palette, ColoredTextIsAsReadableAsThePaletteAllows) {
    for (const bool dark : {true, false}) {
        const Palette& colors = palette(dark);
        const double least = dark ? 6.0 : 3.5;
        const auto expectReadable = [&](PaletteColor ink, const QColor& ground) {
            EXPECT_GE(contrast(color(colors, ink), ground), least) << static_cast<int>(ink) << dark;
        };
        const QColor card = color(colors, PaletteColor::card);
        const QColor tint = color(colors, PaletteColor::tint);
        for (const PaletteColor surface : {PaletteColor::sidebar, PaletteColor::card, PaletteColor::window}) {
            expectReadable(PaletteColor::accentSoft, laidOver(color(colors, surface), tint));
        }
        expectReadable(PaletteColor::accent, card);
        expectReadable(PaletteColor::onAccent, color(colors, PaletteColor::accent));
        for (const PaletteColor surface : {PaletteColor::card, PaletteColor::well, PaletteColor::errorFill}) {
            expectReadable(PaletteColor::hot, color(colors, surface));
        }
        // Marks that carry meaning: the status dot, bars and arcs.
        for (const PaletteColor surface : {PaletteColor::sidebar, PaletteColor::card}) {
            EXPECT_GE(contrast(color(colors, PaletteColor::good), color(colors, surface)), dark ? 9.5 : 2.8);
        }
        for (const PaletteColor mark : {PaletteColor::accent, PaletteColor::hot}) {
            EXPECT_GE(contrast(color(colors, mark), color(colors, PaletteColor::track)), 3.0);
        }
    }
}

} // namespace

} // namespace Fenwhirl
