#include "Fenwhirl/Updates/UpdateTexts.h"

#include <array>
#include <gtest/gtest.h>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

struct Expected {
    const char* code;
    const char* title;
    const char* download;
    const char* later;
    const char* body;
};

// What a user of version 1 of "N" reads about version 2.
constexpr std::array<Expected, 13> expectations = {{
    {"en", "A new version is available", "Download", "Later",
     "Version 2 of N is available. It is free for you. You have version 1."},
    {"sr", "Dostupna je nova verzija", "Preuzmi", "Kasnije",
     "Verzija 2 programa N je dostupna. Besplatna je za tebe. Imaš verziju 1."},
    {"srLatin", "Dostupna je nova verzija", "Preuzmi", "Kasnije",
     "Verzija 2 programa N je dostupna. Besplatna je za tebe. Imaš verziju 1."},
    {"sr-Cyrl", "Доступна је нова верзија", "Преузми", "Касније",
     "Верзија 2 програма N је доступна. Бесплатна је за тебе. Имаш верзију 1."},
    {"srCyrillic", "Доступна је нова верзија", "Преузми", "Касније",
     "Верзија 2 програма N је доступна. Бесплатна је за тебе. Имаш верзију 1."},
    {"de", "Neue Version verfügbar", "Herunterladen", "Später",
     "Version 2 von N ist verfügbar. Sie ist kostenlos für dich. Du hast Version 1."},
    {"es", "Hay una nueva versión", "Descargar", "Más tarde",
     "La versión 2 de N está disponible. Es gratuita para ti. Tienes la versión 1."},
    {"it", "Nuova versione disponibile", "Scarica", "Più tardi",
     "La versione 2 di N è disponibile. È gratuita per te. Hai la versione 1."},
    {"pt", "Nova versão disponível", "Transferir", "Mais tarde",
     "A versão 2 de N está disponível. É gratuita para ti. Tens a versão 1."},
    {"ru", "Доступна новая версия", "Скачать", "Позже",
     "Версия 2 программы N доступна. Она бесплатна для тебя. У тебя версия 1."},
    {"fr", "Une nouvelle version est disponible", "Télécharger", "Plus tard",
     "La version 2 de N est disponible. Elle est gratuite pour toi. Tu as la version 1."},
    {"auto", "Une nouvelle version est disponible", "Télécharger", "Plus tard",
     "La version 2 de N est disponible. Elle est gratuite pour toi. Tu as la version 1."},
    {"", "Une nouvelle version est disponible", "Télécharger", "Plus tard",
     "La version 2 de N est disponible. Elle est gratuite pour toi. Tu as la version 1."},
}};

} // namespace

TEST(UpdateTexts, SpeakEveryLanguageAndFrenchOtherwise) {
    for (const Expected& expected : expectations) {
        const UpdateTexts texts = updateTexts(QString::fromUtf8(expected.code));
        EXPECT_EQ(texts.title, QString::fromUtf8(expected.title)) << expected.code;
        EXPECT_EQ(texts.download, QString::fromUtf8(expected.download)) << expected.code;
        EXPECT_EQ(texts.later, QString::fromUtf8(expected.later)) << expected.code;
        EXPECT_EQ(updateBody(texts, u"2"_s, u"N"_s, u"1"_s), QString::fromUtf8(expected.body))
            << expected.code;
    }
}

TEST(UpdateTexts, FillThePlaceholdersOneKindAfterTheOther) {
    const UpdateTexts texts = {.title = {}, .body = u"%1 %2 %3 %1"_s, .download = {}, .later = {}};
    EXPECT_EQ(updateBody(texts, u"a"_s, u"b"_s, u"c"_s), u"a b c a"_s);
    // Inserted values may contain placeholders of the kinds that follow; they must stay plain text.
    EXPECT_EQ(updateBody(texts, u"%2"_s, u"%3"_s, u"%1"_s), u"%1 %1 %1 %1"_s);
    EXPECT_EQ(updateBody(texts, u"\\1 %9 <b>"_s, u"b"_s, u"c"_s), u"\\1 %9 <b> b c \\1 %9 <b>"_s);
}

} // namespace Fenwhirl
