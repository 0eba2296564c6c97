// The languages of the interface that the user can choose from.
//
// Plain values; usable from any thread.

#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace Fenwhirl {

// In the order of the language picker. `automatic` follows the system's preferred languages. Serbian comes in
// both of its scripts.
enum class AppLanguage { automatic, fr, en, srLatn, srCyrl, de, es, it, pt, ru };

inline constexpr std::array<AppLanguage, 10> allAppLanguages = {
    AppLanguage::automatic, AppLanguage::fr, AppLanguage::en, AppLanguage::srLatn, AppLanguage::srCyrl,
    AppLanguage::de,        AppLanguage::es, AppLanguage::it, AppLanguage::pt,     AppLanguage::ru,
};

// The value in the stored preferences: "auto", "fr", "en", "sr", "sr-Cyrl", "de", "es", "it", "pt" or "ru".
[[nodiscard]] std::string_view rawValue(AppLanguage language);

// Compared exactly; absent for any other text.
[[nodiscard]] std::optional<AppLanguage> appLanguageFromRawValue(std::string_view text);

} // namespace Fenwhirl
