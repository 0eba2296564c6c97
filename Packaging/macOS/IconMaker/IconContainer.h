// The icon of a macOS bundle: one file that holds the same picture in every size the system asks for.
//
// The container is a list of entries behind the word "icns": four letters that say size and scale, the length
// of the entry in bytes (its eight bytes of head included, most significant byte first), and the picture,
// here always a PNG file. The pictures are drawn anew for each size, not scaled.
//
// Pure; any thread. Needs no application object as long as the drawing holds no text.

#pragma once

#include <QByteArray>

#include <array>

struct IconEntry {
    const char* type;
    int pixels; // width and height
};

// What an icon holds: 16 to 512 points, at one or two pixels a point (16 points at one pixel are scaled down
// by the system from 32).
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

// A picture of a drawing in SVG, in PNG; empty when it is no drawing.
[[nodiscard]] QByteArray iconPicture(const QByteArray& svg, int pixels);

// The container for a drawing in SVG; empty when it is no drawing.
[[nodiscard]] QByteArray iconContainer(const QByteArray& svg);
