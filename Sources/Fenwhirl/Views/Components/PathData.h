#pragma once

#include <QPainterPath>
#include <QStringView>

#include <optional>

// Reads the path strings of SVG drawings ("M3 6.25H12.5...").
//
// Supported are M L H V C Q A Z, absolute and relative, with repeated arguments and the compact number
// notation ("-.5.5"). Arcs must be circular or have no rotation, which is all that our drawings use. Smooth
// curves (S, T) are not supported. Numbers are read the same in every locale. Pure; any thread.

namespace Fenwhirl {

// The path; nothing if the text is not a path or uses something unsupported. An empty text gives an empty
// path.
[[nodiscard]] std::optional<QPainterPath> painterPath(QStringView data);

} // namespace Fenwhirl
