#include "Fenwhirl/Localization/AppLanguage.h"

#include <QtGlobal>

#include <algorithm>

namespace Fenwhirl {

std::string_view rawValue(AppLanguage language) {
    switch (language) {
    case AppLanguage::automatic:
        return "auto";
    case AppLanguage::fr:
        return "fr";
    case AppLanguage::en:
        return "en";
    case AppLanguage::srLatn:
        return "sr";
    case AppLanguage::srCyrl:
        return "sr-Cyrl";
    case AppLanguage::de:
        return "de";
    case AppLanguage::es:
        return "es";
    case AppLanguage::it:
        return "it";
    case AppLanguage::pt:
        return "pt";
    case AppLanguage::ru:
        return "ru";
    }
    Q_UNREACHABLE();
}

std::optional<AppLanguage> appLanguageFromRawValue(std::string_view text) {
    const auto* const found = std::ranges::find(allAppLanguages, text, rawValue);
    if (found == allAppLanguages.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace Fenwhirl
