// The icon of a macOS bundle: one file that contains the same picture in every size that the system uses.
//
// The container is a list of entries after the tag "icns" and the length of the file. An entry consists of
// four characters that denote size and scale, its length in bytes (most significant byte first, including
// this header of eight bytes), and the picture, here always a PNG file. Each size is rendered from the
// drawing, not scaled.
//
// Pure functions for any thread. They need no application object as long as the drawing contains no text.

#pragma once

#include <QByteArray>

#include <array>

namespace Fenwhirl {

struct IconEntry {
    const char* type;
    int pixels; // width and height
};

// The pictures of an icon: 16 to 512 points, at one or two pixels per point. The system scales 16 points at
// one pixel down from 32 pixels.
inline constexpr std::array<IconEntry, 8> iconEntries = {{
    {"ic07", 128},  // 128 points
    {"ic08", 256},  // 256 points
    {"ic09", 512},  // 512 points
    {"ic10", 1024}, // 512 points, two pixels each
    {"ic11", 32},   // 16 points, two pixels each; 32 points
    {"ic12", 64},   // 32 points, two pixels each
    {"ic13", 256},  // 128 points, two pixels each
    {"ic14", 512},  // 256 points, two pixels each
}};

// Renders an SVG drawing as a PNG picture; empty when the input is not a valid drawing.
[[nodiscard]] QByteArray iconPicture(const QByteArray& svg, int pixels);

// The container for an SVG drawing; empty when the input is not a valid drawing.
[[nodiscard]] QByteArray iconContainer(const QByteArray& svg);

} // namespace Fenwhirl
