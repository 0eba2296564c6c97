// Fuzzes the lookup, the filling of placeholders, the transliteration and the choice of language with any
// text.
//
// Input: the first byte selects the language; the rest is the text, used once as UTF-8 and once as UTF-16.

#include "Fenwhirl/Localization/AppLanguage.h"
#include "Fenwhirl/Localization/Cyrillic.h"
#include "Fenwhirl/Localization/FrenchTexts.h"
#include "Fenwhirl/Localization/LanguageResolution.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/SensorLabel.h"
#include "Fenwhirl/Platform/PosixLanguages.h"

#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace Fenwhirl {

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

const QString placeholder = QStringLiteral("%@");

// The ASCII characters that are not letters. Transliteration must keep them, in the same order.
QString withoutLetters(const QString& text) {
    QString rest;
    for (const QChar c : text) {
        if (c.unicode() < 0x80 && !c.isLetter()) {
            rest.append(c);
        }
    }
    return rest;
}

void checkTransliteration(const QString& text) {
    const QString cyrillic = Cyrillic::convert(text);
    require(cyrillic.count(placeholder) == text.count(placeholder));
    require(withoutLetters(cyrillic) == withoutLetters(text));
    require(cyrillic.size() <= text.size());
    require(Cyrillic::convert(cyrillic) == cyrillic);
}

void checkFilling(const QString& text) {
    const auto placeholders = text.count(placeholder);
    QStringList values;
    for (qsizetype i = 0; i < placeholders; ++i) {
        values.append(placeholder);
    }
    require(filledPlaceholders(text, values) == text);
    require(filledPlaceholders(text, {}) == text);
    require(filledPlaceholders(text, {QString()}).size() == text.size() - (placeholders > 0 ? 2 : 0));
}

void checkLookup(const QString& text) {
    const bool known =
        std::ranges::find(frenchTexts, std::u16string_view(text.toStdU16String())) != frenchTexts.end();
    const bool french = Localizer::resolved() == AppLanguage::fr;
    require(Localizer::lookup(text).has_value() == (known && !french));
    require(known || localized(text) == text);
    require(!SensorLabel::name(text).isEmpty());
}

void checkResolution(const QString& text) {
    require(languageForPreferred(text.split(u' ')) != AppLanguage::automatic);
    require(languageForPreferred(languageTagsFromPosix(text, text)) != AppLanguage::automatic);
}

void check(const QString& text) {
    checkTransliteration(text);
    checkFilling(text);
    checkLookup(text);
    checkResolution(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    Localizer::setLanguage(allAppLanguages[data[0] % allAppLanguages.size()]);
    const auto* const bytes = reinterpret_cast<const char*>(data + 1);
    const std::size_t length = size - 1;
    static_cast<void>(appLanguageFromRawValue(std::string_view(bytes, length)));
    check(QString::fromUtf8(bytes, static_cast<qsizetype>(length)));
    QString units(static_cast<qsizetype>(length / 2), Qt::Uninitialized);
    std::memcpy(units.data(), bytes, length / 2 * 2);
    check(units);
    return 0;
}

} // namespace Fenwhirl
