#include "Fenwhirl/Localization/AppLanguage.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <algorithm>

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

QString nativeName(AppLanguage language) {
    switch (language) {
    case AppLanguage::automatic:
        return localized(u"Automatique");
    case AppLanguage::fr:
        return QStringLiteral("Français");
    case AppLanguage::en:
        return QStringLiteral("English");
    case AppLanguage::srLatn:
        return QStringLiteral("Srpski (latinica)");
    case AppLanguage::srCyrl:
        return QStringLiteral("Српски (ћирилица)");
    case AppLanguage::de:
        return QStringLiteral("Deutsch");
    case AppLanguage::es:
        return QStringLiteral("Español");
    case AppLanguage::it:
        return QStringLiteral("Italiano");
    case AppLanguage::pt:
        return QStringLiteral("Português");
    case AppLanguage::ru:
        return QStringLiteral("Русский");
    }
    Q_UNREACHABLE();
}
