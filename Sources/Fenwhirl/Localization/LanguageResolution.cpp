#include "Fenwhirl/Localization/LanguageResolution.h"

#include <array>
#include <optional>
#include <utility>

namespace Fenwhirl {

namespace {

std::optional<AppLanguage> languageForTag(const QString& tag) {
    static constexpr std::array<std::pair<QStringView, AppLanguage>, 8> beginnings = {{
        {u"fr", AppLanguage::fr},
        {u"en", AppLanguage::en},
        {u"sr", AppLanguage::srCyrl},
        {u"de", AppLanguage::de},
        {u"es", AppLanguage::es},
        {u"it", AppLanguage::it},
        {u"pt", AppLanguage::pt},
        {u"ru", AppLanguage::ru},
    }};
    const QString lower = tag.toLower();
    for (const auto& [beginning, language] : beginnings) {
        if (lower.startsWith(beginning)) {
            const bool latinSerbian = language == AppLanguage::srCyrl && lower.contains(QStringView(u"latn"));
            return latinSerbian ? AppLanguage::srLatn : language;
        }
    }
    return std::nullopt;
}

} // namespace

AppLanguage languageForPreferred(const QStringList& preferred) {
    for (const QString& tag : preferred) {
        if (const auto language = languageForTag(tag)) {
            return *language;
        }
    }
    return AppLanguage::en;
}

} // namespace Fenwhirl
