#include "DesktopEntry.h"

#include "Fenwhirl/Localization/Localizer.h"

#include <QFile>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QStringList entryLines() {
    QFile file(QStringLiteral(FENWHIRL_DESKTOP_ENTRY));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n') : QStringList();
}

QString value(const QStringList& lines, const QString& key) {
    const QStringList found = lines.filter(QRegularExpression(u'^' + QRegularExpression::escape(key) + u'='));
    return found.size() == 1 ? found.first().sliced(key.size() + 1) : QString();
}

} // namespace

TEST(DesktopEntry, CallsTheProgramAsItCallsItself) {
    const QStringList lines = entryLines();
    EXPECT_EQ(value(lines, u"GenericName"_s), u"Fan control"_s) << "the language without a name is English";
    EXPECT_EQ(value(lines, u"GenericName[fr]"_s), u"Contrôle des ventilateurs"_s);
    EXPECT_EQ(value(lines, u"GenericName[sr]"_s), u"Управљање вентилаторима"_s);
    EXPECT_EQ(value(lines, u"GenericName[sr@latin]"_s), u"Upravljanje ventilatorima"_s);
    EXPECT_EQ(value(lines, u"GenericName[es]"_s), u"Control de ventiladores"_s);
}

TEST(DesktopEntry, HasNamesAndKeywordsInEveryLanguage) {
    const QStringList lines = entryLines();
    for (const char* const locale :
         {"", "[en]", "[fr]", "[sr]", "[sr@latin]", "[de]", "[es]", "[it]", "[pt]", "[ru]"}) {
        EXPECT_NE(value(lines, u"GenericName"_s + QString::fromLatin1(locale)), QString()) << locale;
        const QString keywords = value(lines, u"Keywords"_s + QString::fromLatin1(locale));
        QStringList words = keywords.split(u';');
        EXPECT_GE(words.size(), 5) << locale;
        EXPECT_EQ(words.removeDuplicates(), 0) << locale;
        EXPECT_TRUE(keywords.endsWith(u';')) << locale;
        EXPECT_FALSE(keywords.contains(u";;"_s)) << locale;
    }
    EXPECT_EQ(lines.filter(u"GenericName"_s).size(), 10);
    EXPECT_EQ(lines.filter(u"@TEXTS@"_s).size(), 0);
}

TEST(DesktopEntry, KeepsWhatIsNoText) {
    EXPECT_EQ(entryLines().first(), u"[Desktop Entry]"_s);
    EXPECT_EQ(value(entryLines(), u"Exec"_s), u"Fenwhirl"_s);
    EXPECT_EQ(desktopEntry(u"a\n@TEXTS@\nb\n"_s), u"a\n"_s + desktopEntryTexts() + u"b\n"_s);
    EXPECT_EQ(desktopEntry(u"nothing"_s), u"nothing"_s);
}

TEST(DesktopEntry, LeavesTheLanguageAsItWas) {
    Localizer::setLanguage(AppLanguage::de);
    static_cast<void>(desktopEntryTexts());
    EXPECT_EQ(Localizer::language(), AppLanguage::de);
    Localizer::setLanguage(AppLanguage::automatic);
}
