// The languages of the interface, as the user chooses them.
//
// Plain values; usable from any thread.

#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

// In the order of the language picker. `automatic` follows the system's preferred languages. Serbian comes in
// both of its scripts.
enum class AppLanguage { automatic, fr, en, srLatn, srCyrl, de, es, it, pt, ru };

inline constexpr std::array<AppLanguage, 10> allAppLanguages = {
    AppLanguage::automatic, AppLanguage::fr, AppLanguage::en, AppLanguage::srLatn, AppLanguage::srCyrl,
    AppLanguage::de,        AppLanguage::es, AppLanguage::it, AppLanguage::pt,     AppLanguage::ru,
};

// "auto", "fr", "en", "sr", "sr-Cyrl", "de", "es", "it", "pt", "ru": the words of the stored preferences.
[[nodiscard]] std::string_view rawValue(AppLanguage language);

// Compared to the letter; any other text is no language.
[[nodiscard]] std::optional<AppLanguage> appLanguageFromRawValue(std::string_view text);

// The language's name as it calls itself, never translated, so that everybody finds their own; for
// `automatic` the word for it in the current language.
[[nodiscard]] QString nativeName(AppLanguage language);
