#include "Fenwhirl/Localization/Localizer.h"

#include "Fenwhirl/Localization/Cyrillic.h"
#include "Fenwhirl/Localization/LanguageResolution.h"
#include "Fenwhirl/Localization/Translations.h"
#include "Fenwhirl/Platform/PreferredLanguages.h"

#include <atomic>

namespace Fenwhirl {

namespace {

// Atomic: the polling queue reads it for its messages while the main thread may set it.
std::atomic<AppLanguage> chosenLanguage = AppLanguage::automatic;

std::atomic<void (*)(QStringView)> lookupObserver = nullptr;

// The table with the texts of a language; null for French, whose texts are the keys.
const TranslationTable* tableOf(AppLanguage language) {
    switch (language) {
    case AppLanguage::automatic:
    case AppLanguage::fr:
        return nullptr;
    case AppLanguage::en:
        return &Translations::en();
    case AppLanguage::srLatn:
    case AppLanguage::srCyrl:
        return &Translations::sr();
    case AppLanguage::de:
        return &Translations::de();
    case AppLanguage::es:
        return &Translations::es();
    case AppLanguage::it:
        return &Translations::it();
    case AppLanguage::pt:
        return &Translations::pt();
    case AppLanguage::ru:
        return &Translations::ru();
    }
    Q_UNREACHABLE();
}

// The texts are string literals, so a QString may refer to them permanently.
QString withoutCopy(QStringView literal) {
    return QString::fromRawData(literal.data(), literal.size());
}

} // namespace

AppLanguage Localizer::language() {
    return chosenLanguage.load(std::memory_order_relaxed);
}

void Localizer::setLanguage(AppLanguage language) {
    chosenLanguage.store(language, std::memory_order_relaxed);
}

AppLanguage Localizer::resolved() {
    const AppLanguage chosen = language();
    return chosen == AppLanguage::automatic ? languageForPreferred(preferredLanguages()) : chosen;
}

void Localizer::setLookupObserver(void (*observer)(QStringView key)) {
    lookupObserver.store(observer, std::memory_order_relaxed);
}

std::optional<QString> Localizer::lookup(QStringView key) {
    if (auto* const observer = lookupObserver.load(std::memory_order_relaxed); observer != nullptr) {
        observer(key);
    }
    const AppLanguage shown = resolved();
    const TranslationTable* const table = tableOf(shown);
    if (table == nullptr) {
        return std::nullopt;
    }
    const std::optional<QStringView> text = table->find(key);
    if (!text) {
        return std::nullopt;
    }
    return shown == AppLanguage::srCyrl ? Cyrillic::convert(*text) : withoutCopy(*text);
}

QString localized(TextKey key) {
    const QStringView french(key.french());
    return Localizer::lookup(french).value_or(withoutCopy(french));
}

QString localized(const QString& key) {
    return Localizer::lookup(key).value_or(key);
}

QString localized(const QString& key, const QStringList& values) {
    return filledPlaceholders(localized(key), values);
}

QString filledPlaceholders(QStringView text, const QStringList& values) {
    static constexpr QStringView placeholder = u"%@";
    QString filled;
    qsizetype done = 0;
    for (const QString& value : values) {
        const qsizetype at = text.indexOf(placeholder, done);
        if (at < 0) {
            break;
        }
        filled.append(text.sliced(done, at - done)).append(value);
        done = at + placeholder.size();
    }
    return filled.append(text.sliced(done));
}

} // namespace Fenwhirl
