// The one-click presets: each rewrites the settings of every fan that is present.

#pragma once

#include "Fenwhirl/Monitoring/FanSetting.h"

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace Fenwhirl {

enum class Preset { automatic, silent, balanced, game, max };

inline constexpr std::array<Preset, 5> allPresets = {Preset::automatic, Preset::silent, Preset::balanced,
                                                     Preset::game, Preset::max};

// The value in the stored preferences: "auto", "silent", "balanced", "game" or "max".
[[nodiscard]] std::string_view rawValue(Preset preset);
[[nodiscard]] std::optional<Preset> presetFromRawValue(std::string_view text);

// The preset with this raw value, or with this title in any language; case does not matter. Main thread: the
// interface language is changed temporarily.
[[nodiscard]] std::optional<Preset> presetFromName(const QString& name);

// Name and explanation in the interface language.
[[nodiscard]] QString title(Preset preset);
[[nodiscard]] QString detail(Preset preset);

// The setting that the preset gives to a fan whose highest speed is `maxRPM`.
[[nodiscard]] FanSetting settingFor(Preset preset, double maxRPM);

} // namespace Fenwhirl
