#include "Fenwhirl/Localization/Translations.h"

#include "Fenwhirl/Localization/FrenchTexts.h"
#include "Fenwhirl/Localization/Tables/English.h"
#include "Fenwhirl/Localization/Tables/German.h"
#include "Fenwhirl/Localization/Tables/Italian.h"
#include "Fenwhirl/Localization/Tables/Portuguese.h"
#include "Fenwhirl/Localization/Tables/Russian.h"
#include "Fenwhirl/Localization/Tables/SerbianLatin.h"
#include "Fenwhirl/Localization/Tables/Spanish.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <span>
#include <string_view>
#include <utility>

namespace Fenwhirl {

using namespace Translations;

namespace {

QString text(std::u16string_view view) {
    return QStringView(view).toString();
}

struct Language {
    const char* name;
    std::span<const Row> rows;
    const TranslationTable& (*table)();
};

constexpr std::array<Language, 7> languages = {{{"English", englishTexts, en},
                                                {"Serbian", serbianLatinTexts, sr},
                                                {"German", germanTexts, de},
                                                {"Spanish", spanishTexts, es},
                                                {"Italian", italianTexts, it},
                                                {"Portuguese", portugueseTexts, pt},
                                                {"Russian", russianTexts, ru}}};

// The first word after a placeholder that is not a unit; empty when there is none.
QString nounAfterNumber(const QString& shown) {
    static const QRegularExpression word(QStringLiteral("%@\\s*(\\p{L}[\\p{L}/]*)"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    static const QStringList units = {QStringLiteral("rpm"), QStringLiteral("U/min"), QStringLiteral("o/min"),
                                      QStringLiteral("giri/min"), QStringLiteral("об/мин")};
    for (const QRegularExpressionMatch& match : word.globalMatch(shown)) {
        if (!units.contains(match.captured(1))) {
            return match.captured(1);
        }
    }
    return {};
}

} // namespace

TEST(Translations, FindEveryRowOfEveryLanguage) {
    for (const Language& language : languages) {
        const TranslationTable& table = language.table();
        EXPECT_EQ(table.size(), static_cast<qsizetype>(frenchTexts.size())) << language.name;
        for (const Row& row : language.rows) {
            EXPECT_EQ(table.find(QStringView(row.french)), QStringView(row.text)) << language.name;
        }
        EXPECT_EQ(table.find(u"Pas dans la table"), std::nullopt);
    }
}

TEST(Translations, AreBuiltOnce) {
    for (const Language& language : languages) {
        EXPECT_EQ(&language.table(), &language.table());
    }
}

// A number must not be followed by a noun that would have to agree with it: "1 sensors", "1 датчиков".
TEST(Translations, PutNoNounBehindANumber) {
    for (const Language& language : languages) {
        for (const Row& row : language.rows) {
            // These placeholders stand for a name or a percentage.
            if (row.french == u"%@ utilise %@ du processeur." || row.french == u"Fermer %@ ?") {
                continue;
            }
            EXPECT_EQ(nounAfterNumber(text(row.text)), QString())
                << language.name << ": " << text(row.text).toStdString();
        }
    }
    EXPECT_EQ(nounAfterNumber(QStringLiteral("%@ sensors")), QStringLiteral("sensors"));
    EXPECT_EQ(nounAfterNumber(QStringLiteral("Your Mac is heating up: %@ degrees.")),
              QStringLiteral("degrees"));
    EXPECT_EQ(nounAfterNumber(QStringLiteral("Sensors: %@")), QString());
}

// There SensorLabel inserts the key's letter as it appears in the French name.
TEST(Translations, EndWithTheKeysLetterWhereTheFrenchNameDoes) {
    for (const Language& language : languages) {
        for (const Row& row : language.rows) {
            if (row.french.ends_with(u"(E)") || row.french.ends_with(u"(F)")) {
                EXPECT_EQ(row.text.substr(row.text.size() - 3), row.french.substr(row.french.size() - 3))
                    << language.name;
            }
        }
    }
}

TEST(Translations, OfRussianHaveLatinLettersOnlyInNames) {
    // Latin letters may appear only in these names; a forgotten row would show up at once.
    for (const Row& row : russianTexts) {
        QString rest = text(row.text);
        for (const char16_t* const name :
             {u"Fenwhirl", u"macOS", u"Mac", u"CPU", u"SSD", u"PECI", u"Wi-Fi", u"°C", u"(E)", u"(F)"}) {
            rest.remove(QStringView(name).toString());
        }
        EXPECT_FALSE(std::ranges::any_of(rest, [](QChar c) { return c.unicode() < 0x180 && c.isLetter(); }))
            << text(row.text).toStdString();
    }
}

TEST(Translations, OfSerbianUseOnlyLettersThatHaveACyrillicForm) {
    for (const Row& row : serbianLatinTexts) {
        QString rest = text(row.text);
        rest.remove(QStringLiteral("Fenwhirl")).remove(QStringLiteral("Wi-Fi"));
        for (const QChar c : rest) {
            EXPECT_FALSE(QStringView(u"qwxyQWXY").contains(c)) << text(row.text).toStdString();
        }
    }
}

TEST(TranslationTableDeathTest, StopsTheProgramAtADoubledText) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    static constexpr std::array<Row, 2> doubled = {{{u"Fermer", u"Quit"}, {u"Fermer", u"Close"}}};
    EXPECT_EXIT({ const TranslationTable table(doubled); }, testing::KilledBySignal(SIGABRT), "Fermer");
}

} // namespace Fenwhirl
