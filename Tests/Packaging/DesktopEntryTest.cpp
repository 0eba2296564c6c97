#include "DesktopEntry.h"

#include "Fenwhirl/HelperClient/HelperClient.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "PackageTexts.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

// The lines of one group of the generated desktop entry, starting with the group's header. Empty when there
// is no such group.
QStringList entryLines(const QString& group = u"[Desktop Entry]"_s) {
    QFile file(QStringLiteral(FENWHIRL_DESKTOP_ENTRY));
    const QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    const qsizetype begin = text.indexOf(group);
    return begin < 0 ? QStringList()
                     : text.sliced(begin, text.indexOf(u"\n["_s, begin + 1) < 0
                                              ? text.size() - begin
                                              : text.indexOf(u"\n["_s, begin + 1) - begin)
                           .split(u'\n');
}

QString value(const QStringList& lines, const QString& key) {
    const QStringList found = lines.filter(QRegularExpression(u'^' + QRegularExpression::escape(key) + u'='));
    return found.size() == 1 ? found.first().sliced(key.size() + 1) : QString();
}

} // namespace

TEST(DesktopEntry, HasTheGenericNameInEachLanguage) {
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
        EXPECT_NE(value(lines, u"Comment"_s + QString::fromLatin1(locale)), QString()) << locale;
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

TEST(DesktopEntry, KeepsTheRestOfTheTemplate) {
    EXPECT_EQ(entryLines().first(), u"[Desktop Entry]"_s);
    EXPECT_EQ(value(entryLines(), u"Exec"_s), u"Fenwhirl"_s);
    EXPECT_EQ(desktopEntry(u"a\n@TEXTS@\nb\n"_s), u"a\n"_s + desktopEntryTexts() + u"b\n"_s);
    EXPECT_EQ(desktopEntry(u"nothing"_s), u"nothing"_s);
}

TEST(DesktopEntry, HasAnActionForEachPreset) {
    EXPECT_EQ(value(entryLines(), u"Actions"_s), u"auto;silent;balanced;game;max;"_s);
    EXPECT_EQ(value(entryLines(), u"DBusActivatable"_s), u"true"_s);
    const QStringList game = entryLines(u"[Desktop Action game]"_s);
    EXPECT_EQ(value(game, u"Name"_s), u"Gaming"_s);
    EXPECT_EQ(value(game, u"Name[fr]"_s), u"Jeu"_s);
    EXPECT_EQ(value(game, u"Exec"_s), u"Fenwhirl --preset game"_s);
    EXPECT_EQ(game.filter(u"Name"_s).size(), 10);
    EXPECT_EQ(entryLines(u"[Desktop Action max]"_s).filter(u"Exec="_s).size(), 1);
}

TEST(PackageTexts, NameTheCommandsThatTheProgramRunsAsRoot) {
    const QString install =
        QString::fromStdString(HelperClient::installCommand("/usr/bin/Fenwhirl").value_or(""));
    ASSERT_FALSE(install.isEmpty());
    QProcess shell;
    shell.start(u"/bin/sh"_s,
                {u"-c"_s, filledTemplate(u"printf '%s|%s' @INSTALL_COMMAND_SH@ @REMOVE_COMMAND_SH@"_s)});
    ASSERT_TRUE(shell.waitForFinished());
    EXPECT_EQ(QString::fromUtf8(shell.readAllStandardOutput()),
              install + u'|' + QString::fromStdString(HelperClient::removalCommand()));
}

TEST(PackageTexts, SpeakEveryLanguage) {
    const QString messages = filledTemplate(u"@ACTIVATION_MESSAGES@\n@REMOVAL_MESSAGES@\n"_s);
    EXPECT_EQ(messages.count(u"<message"_s), 2 * 9);
    EXPECT_TRUE(messages.startsWith(u"<message>Turn On Fan Control</message>"_s));
    EXPECT_TRUE(messages.contains(u"<message xml:lang=\"de\">Lüftersteuerung aktivieren</message>"_s));
    const QString summaries = filledTemplate(u"@SUMMARIES@\n"_s);
    EXPECT_EQ(summaries.count(u"<summary"_s), 9);
    EXPECT_FALSE(summaries.contains(u'@'));
    EXPECT_EQ(filledTemplate(u"@DESCRIPTIONS@\n"_s).count(u"<p"_s), 9);
}

TEST(DesktopEntry, LeavesTheLanguageAsItWas) {
    Localizer::setLanguage(AppLanguage::de);
    static_cast<void>(desktopEntryTexts());
    static_cast<void>(desktopEntryActions());
    static_cast<void>(filledTemplate(u"@SUMMARIES@\n"_s));
    EXPECT_EQ(Localizer::language(), AppLanguage::de);
    Localizer::setLanguage(AppLanguage::automatic);
}

} // namespace Fenwhirl
