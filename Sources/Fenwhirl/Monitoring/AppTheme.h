// The appearance that the user chose.

#pragma once

#include <array>
#include <optional>
#include <string_view>

enum class AppTheme { dark, light, automatic };

inline constexpr std::array<AppTheme, 3> allAppThemes = {AppTheme::dark, AppTheme::light,
                                                         AppTheme::automatic};

// The value in the stored preferences: "dark", "light" or "auto".
[[nodiscard]] std::string_view rawValue(AppTheme theme);
[[nodiscard]] std::optional<AppTheme> appThemeFromRawValue(std::string_view text);
