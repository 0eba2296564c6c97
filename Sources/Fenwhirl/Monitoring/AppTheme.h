// The appearance that the user chose. Any thread.

#pragma once

#include "Fenwhirl/Monitoring/RawValues.h"

namespace Fenwhirl {

enum class AppTheme { dark, light, automatic };

// The values in the stored preferences.
inline constexpr RawValueTable<AppTheme, 3> appThemeRawValues = {
    {{AppTheme::dark, "dark"}, {AppTheme::light, "light"}, {AppTheme::automatic, "auto"}}};

inline constexpr std::array allAppThemes = casesOf(appThemeRawValues);

[[nodiscard]] constexpr std::string_view rawValue(AppTheme theme) {
    return rawValueIn(appThemeRawValues, theme);
}

[[nodiscard]] constexpr std::optional<AppTheme> appThemeFromRawValue(std::string_view text) {
    return caseIn(appThemeRawValues, text);
}

} // namespace Fenwhirl
