#pragma once

#include <QPainterPath>
#include <QStringView>

#include <optional>

// Reads the path strings of SVG drawings ("M3 6.25H12.5...").
//
// Understood: M L H V C Q A Z, absolute and relative, with repeated arguments and the compact number notation
// ("-.5.5"). Arcs must be circles or have no rotation, which is all our drawings use. Smooth curves (S, T)
// are not understood. Numbers are read the same in every locale. Pure; any thread.

namespace Fenwhirl {

// The path, or nothing when the text is not one or uses what is not understood. An empty text is an empty
// path.
[[nodiscard]] std::optional<QPainterPath> painterPath(QStringView data);

} // namespace Fenwhirl
