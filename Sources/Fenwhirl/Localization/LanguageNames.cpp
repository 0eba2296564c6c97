#include "Fenwhirl/Localization/LanguageNames.h"

#include "Fenwhirl/Localization/Localizer.h"

namespace Fenwhirl {

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

} // namespace Fenwhirl
