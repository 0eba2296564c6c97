// What this program says about itself, as its application bundle states it.
//
// On macOS the values come from the main bundle's Info.plist. Elsewhere there is no bundle, and they are
// those of the build.
//
// Threads: any.

#pragma once

#include <QString>

#include <optional>

namespace Fenwhirl::BundleInfo {

// The name ("Fenwhirl"); absent when the bundle has none or it is not a string.
[[nodiscard]] std::optional<QString> name();

// The version that users see ("0.1"); absent under the same conditions.
[[nodiscard]] std::optional<QString> shortVersion();

// The path of the bundle's folder; empty where there are no bundles.
[[nodiscard]] QString path();

} // namespace Fenwhirl::BundleInfo
