#include "Fenwhirl/Updates/UpdateTexts.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Fenwhirl {

namespace {

struct Row {
    // Two codes for one language where the program has used two.
    std::array<std::u16string_view, 2> codes;
    std::u16string_view title;
    std::u16string_view download;
    std::u16string_view later;
    std::u16string_view body;
};

constexpr Row french = {
    {u"fr", u"fr"},
    u"Une nouvelle version est disponible",
    u"Télécharger",
    u"Plus tard",
    u"La version %1 de %2 est disponible. Elle est gratuite pour toi. Tu as la version %3.",
};

constexpr std::array rows = {
    Row{{u"en", u"en"},
        u"A new version is available",
        u"Download",
        u"Later",
        u"Version %1 of %2 is available. It is free for you. You have version %3."},
    Row{{u"sr", u"srLatin"},
        u"Dostupna je nova verzija",
        u"Preuzmi",
        u"Kasnije",
        u"Verzija %1 programa %2 je dostupna. Besplatna je za tebe. Imaš verziju %3."},
    Row{{u"sr-Cyrl", u"srCyrillic"},
        u"Доступна је нова верзија",
        u"Преузми",
        u"Касније",
        u"Верзија %1 програма %2 је доступна. Бесплатна је за тебе. Имаш верзију %3."},
    Row{{u"de", u"de"},
        u"Neue Version verfügbar",
        u"Herunterladen",
        u"Später",
        u"Version %1 von %2 ist verfügbar. Sie ist kostenlos für dich. Du hast Version %3."},
    Row{{u"es", u"es"},
        u"Hay una nueva versión",
        u"Descargar",
        u"Más tarde",
        u"La versión %1 de %2 está disponible. Es gratuita para ti. Tienes la versión %3."},
    Row{{u"it", u"it"},
        u"Nuova versione disponibile",
        u"Scarica",
        u"Più tardi",
        u"La versione %1 di %2 è disponibile. È gratuita per te. Hai la versione %3."},
    Row{{u"pt", u"pt"},
        u"Nova versão disponível",
        u"Transferir",
        u"Mais tarde",
        u"A versão %1 de %2 está disponível. É gratuita para ti. Tens a versão %3."},
    Row{{u"ru", u"ru"},
        u"Доступна новая версия",
        u"Скачать",
        u"Позже",
        u"Версия %1 программы %2 доступна. Она бесплатна для тебя. У тебя версия %3."},
};

QString textOf(std::u16string_view text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

UpdateTexts updateTexts(const QString& languageCode) {
    const std::u16string code = languageCode.toStdU16String();
    const auto* const found = std::find_if(rows.begin(), rows.end(), [&code](const Row& row) {
        return std::find(row.codes.begin(), row.codes.end(), code) != row.codes.end();
    });
    const Row& row = found == rows.end() ? french : *found;
    return {textOf(row.title), textOf(row.body), textOf(row.download), textOf(row.later)};
}

QString updateBody(const UpdateTexts& texts, const QString& version, const QString& name,
                   const QString& current) {
    QString body = texts.body;
    body.replace(QStringLiteral("%1"), version);
    body.replace(QStringLiteral("%2"), name);
    body.replace(QStringLiteral("%3"), current);
    return body;
}

} // namespace Fenwhirl
