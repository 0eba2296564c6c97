#include "Fenwhirl/Processes/DesktopEntries.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

class DesktopEntriesTest : public testing::Test {
protected:
    void write(const QString& name, const QByteArray& text) const {
        const QString path = folder.filePath(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.setPermissions(file.permissions() | QFile::ExeOwner);
    }

    void writeEntry(const QString& name, const QString& exec, const QByteArray& more = {}) const {
        write(name, "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() + "\nExec=" + exec.toUtf8() +
                        '\n' + more);
    }

    [[nodiscard]] QString at(const QString& name) const { return folder.filePath(name); }

    [[nodiscard]] static QString idOf(const DesktopEntry* entry) { return entry ? entry->id : u"none"_s; }

    QTemporaryDir folder;
    DesktopEntries entries{
        {folder.filePath(u"mine"_s), folder.filePath(u"theirs"_s)}, {folder.filePath(u"bin"_s)}, makeHome()};

private:
    // Created here, because its links are resolved when the entries are constructed.
    [[nodiscard]] QString makeHome() const {
        QDir().mkpath(at(u"home"_s));
        return at(u"home"_s);
    }
};

} // namespace

TEST(DesktopEntry, IsReadWithItsNames) {
    const auto entry =
        parseDesktopEntry("# a comment\n[Desktop Entry]\nType = Application\nName=Text; Editor\n"
                          "Name[de]=Text, Editor\nName[sr@latin]=Uređivač\\sa\nExec=edit %U\n"
                          "NoDisplay=true\n[Desktop Action x]\nName=Other\nExec=other\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name({u"de_AT"_s, u"de"_s}), u"Text, Editor"_s);
    EXPECT_EQ(entry->name({u"sr@latin"_s}), u"Uređivač a"_s);
    EXPECT_EQ(entry->name({u"fr"_s}), u"Text; Editor"_s);
    EXPECT_EQ(entry->command, QStringList{u"edit"_s});
    EXPECT_FALSE(entry->isShown);
}

TEST(DesktopEntry, ThatIsBrokenOrHiddenIsNone) {
    for (const char* const text :
         {"", "\n\n", "Name=x", "[Desktop Entry]", "[Desktop Entry]\nType=Application\nExec=x",
          "[Desktop Entry]\nType=Link\nName=x", "[Desktop Entry]\nName=x\nExec=x",
          "[Desktop Entry]\nType=Application\nName=  \n", "[Other]\nType=Application\nName=x",
          "[Desktop Entry]\nType=Application\nName=x\nHidden=true\n",
          "[Desktop Entry\nType=Application\nName=x", "\xff\xfe[\0D", "=\n=x\n[",
          "[Desktop Entry]\n=Application\nName[=x\nName[]=y\n"}) {
        EXPECT_FALSE(parseDesktopEntry(text)) << text;
    }
}

TEST(DesktopEntry, ItsCommandIsTakenApart) {
    EXPECT_EQ(commandWords(u"a  \"b c\" %f d%%e \"\\\"q\\\\\" \"\""),
              (QStringList{u"a"_s, u"b c"_s, u"d%e"_s, u"\"q\\"_s, QString()}));
    EXPECT_EQ(commandWords(u""), QStringList());
    EXPECT_EQ(commandWords(u"\"open"), QStringList{u"open"_s});
    EXPECT_EQ(commandWords(u"%"), QStringList{u"%"_s});
    EXPECT_EQ(parseDesktopEntry("[Desktop Entry]\nType=Application\nName=x\nExec=env A=b -u C prog -x\n")
                  ->command.first(),
              u"C"_s)
        << "what \"env\" may be told beside is not known";
    EXPECT_EQ(parseDesktopEntry("[Desktop Entry]\nType=Application\nName=x\nExec=env A=b prog -x\n")->command,
              (QStringList{u"prog"_s, u"-x"_s}));
}

TEST(DesktopEntry, TheScriptOfAnInterpreterIsFound) {
    const auto script = [](const char* command) {
        return interpretedScript(QString::fromUtf8(command).split(u' ')).value_or(u"none"_s);
    };
    EXPECT_EQ(script("python3 app.py"), u"app.py"_s);
    EXPECT_EQ(script("/usr/bin/python3.11 -u -X dev -I /opt/app/app.py --more"), u"/opt/app/app.py"_s);
    EXPECT_EQ(script("python3 -m http.server"), u"http.server"_s);
    EXPECT_EQ(script("java -Xmx1g -cp a.jar:b.jar -jar game.jar"), u"game.jar"_s);
    EXPECT_EQ(script("java -cp a.jar com.example.Main"), u"com.example.Main"_s);
    EXPECT_EQ(script("node -r ./hook server.js"), u"server.js"_s);
    EXPECT_EQ(script("perl -w -- script.pl"), u"script.pl"_s);
    for (const char* const none :
         {"", "python3", "python3 -c pass", "bash", "bash -c ls", "perl -e 1", "gcc file.c",
          "python3-config x", "java -cp x", "python3 -m", "python3 --", "pythonista a"}) {
        EXPECT_EQ(script(none), u"none"_s) << none;
    }
}

TEST_F(DesktopEntriesTest, AreFoundByTheirIdentifierAndTheFirstFolderCounts) {
    writeEntry(u"theirs/one.desktop"_s, u"x"_s);
    writeEntry(u"theirs/kde/two.desktop"_s, u"x"_s);
    writeEntry(u"theirs/gone.desktop"_s, u"x"_s);
    writeEntry(u"mine/one.desktop"_s, u"y"_s);
    writeEntry(u"mine/gone.desktop"_s, u"y"_s, "Hidden=true\n");
    entries.update();
    EXPECT_EQ(entries.withId(u"one"_s)->file, at(u"mine/one.desktop"_s));
    EXPECT_EQ(idOf(entries.withId(u"kde-two"_s)), u"kde-two"_s);
    EXPECT_EQ(entries.withId(u"gone"_s), nullptr);
    EXPECT_EQ(entries.withId(u"two"_s), nullptr);
    EXPECT_EQ(entries.withId(QString()), nullptr);
}

TEST_F(DesktopEntriesTest, AreReadAgainWhenAFolderChanges) {
    EXPECT_TRUE(entries.update());
    EXPECT_FALSE(entries.update());
    writeEntry(u"mine/one.desktop"_s, u"x"_s);
    EXPECT_TRUE(entries.update());
    EXPECT_NE(entries.withId(u"one"_s), nullptr);
    EXPECT_FALSE(entries.update());
    QDir(at(u"mine"_s)).removeRecursively();
    EXPECT_TRUE(entries.update());
    EXPECT_EQ(entries.withId(u"one"_s), nullptr);
}

TEST_F(DesktopEntriesTest, AreFoundByTheirProgramWhateverLinksLeadThere) {
    write(u"real/tool"_s, "");
    QDir().mkpath(at(u"bin"_s));
    ASSERT_TRUE(QFile::link(at(u"real/tool"_s), at(u"bin/tool"_s)));
    writeEntry(u"mine/tool.desktop"_s, u"tool %U"_s);
    entries.update();
    EXPECT_EQ(idOf(entries.ofProgram(QFileInfo(at(u"real/tool"_s)).canonicalFilePath())), u"tool"_s);
    EXPECT_EQ(entries.ofProgram(u"/usr/bin/true"_s), nullptr);
    EXPECT_EQ(entries.ofProgram(QString()), nullptr);
}

// As with a browser or an editor: a start script, and many processes from a folder of its own.
TEST_F(DesktopEntriesTest, HaveWhatLiesInTheirOwnFolder) {
    write(u"opt/editor/bin/editor"_s, "");
    writeEntry(u"mine/editor.desktop"_s, at(u"opt/editor/bin/editor"_s));
    writeEntry(u"mine/editor-url.desktop"_s, at(u"opt/editor/bin/editor"_s) + u" --open-url %u"_s,
               "NoDisplay=true\n");
    entries.update();
    EXPECT_EQ(idOf(entries.ofProgram(at(u"opt/editor/lib/crashpad"_s))), u"editor"_s);
    EXPECT_EQ(entries.ofProgram(at(u"opt/other"_s)), nullptr);
}

TEST_F(DesktopEntriesTest, HaveTheSystemsFolderOfTheirName) {
    write(u"bin/browser"_s, "#!/bin/sh\n");
    writeEntry(u"mine/org.browser.desktop"_s, u"browser %u"_s);
    entries.update();
    EXPECT_EQ(idOf(entries.ofProgram(u"/usr/lib/browser/browser-bin"_s)), u"org.browser"_s);
    EXPECT_EQ(idOf(entries.ofProgram(u"/usr/lib/x86_64-linux-gnu/browser/plugin"_s)), u"org.browser"_s);
    EXPECT_EQ(idOf(entries.ofProgram(u"/opt/browser/browser"_s)), u"org.browser"_s);
    EXPECT_EQ(entries.ofProgram(u"/usr/lib/other/browser"_s), nullptr);
    EXPECT_EQ(entries.ofProgram(u"/usr/bin/browser"_s), nullptr) << "another one of that name";
}

// Whoever keeps their work in "~/code" must not have it quit together with the editor of that name.
TEST_F(DesktopEntriesTest, HaveNoFolderOfTheirNameWhereNothingIsInstalled) {
    write(u"bin/code"_s, "");
    writeEntry(u"mine/code.desktop"_s, u"code %F"_s);
    entries.update();
    for (const QString& path :
         {u"/home/camille/code/api/server"_s, u"/home/code/api/server"_s, u"/root/code/server"_s,
          u"/tmp/code/server"_s, u"/var/code/server"_s, u"/var/lib/code/server"_s, u"/srv/code/server"_s,
          u"/home/camille/.local/bin/code/server"_s, u"/home/camille/.local/code/server"_s}) {
        EXPECT_EQ(entries.ofProgram(path), nullptr) << path.toStdString();
    }
    for (const QString& path :
         {u"/opt/code/server"_s, u"/usr/share/code/server"_s, u"/usr/local/lib/code/bin/server"_s,
          u"/lib64/code/server"_s, u"/home/camille/.local/share/code/server"_s,
          u"/home/camille/.local/lib/code/server"_s}) {
        EXPECT_EQ(idOf(entries.ofProgram(path)), u"code"_s) << path.toStdString();
    }
}

TEST_F(DesktopEntriesTest, HaveNoFolderOfTheHomeToThemselves) {
    write(u"home/Downloads/editor.AppImage"_s, "");
    writeEntry(u"mine/editor.desktop"_s, at(u"home/Downloads/editor.AppImage"_s));
    write(u"home/Tools/bin/viewer"_s, "");
    writeEntry(u"mine/viewer.desktop"_s, at(u"home/Tools/bin/viewer"_s));
    write(u"home/tool"_s, "");
    writeEntry(u"mine/tool.desktop"_s, at(u"home/tool"_s));
    entries.update();
    const QString home = QFileInfo(at(u"home"_s)).canonicalFilePath();
    EXPECT_EQ(idOf(entries.ofProgram(home + u"/Downloads/editor.AppImage"_s)), u"editor"_s);
    EXPECT_EQ(idOf(entries.ofProgram(home + u"/Tools/bin/viewer"_s)), u"viewer"_s);
    EXPECT_EQ(idOf(entries.ofProgram(home + u"/tool"_s)), u"tool"_s);
    for (const QString& other : {u"/Downloads/server"_s, u"/Downloads/api/server"_s, u"/Tools/server"_s,
                                 u"/Music/player"_s, u"/.cache/x/y"_s}) {
        EXPECT_EQ(entries.ofProgram(home + other), nullptr) << other.toStdString();
    }
}

TEST_F(DesktopEntriesTest, HaveTheFolderOfTheirNameThatWasUnpackedInTheHome) {
    write(u"home/Browser/browser"_s, "");
    writeEntry(u"mine/browser.desktop"_s, at(u"home/Browser/browser"_s));
    write(u"home/Apps/Player/player"_s, "");
    writeEntry(u"mine/player.desktop"_s, at(u"home/Apps/Player/player"_s));
    entries.update();
    const QString home = QFileInfo(at(u"home"_s)).canonicalFilePath();
    EXPECT_EQ(idOf(entries.ofProgram(home + u"/Browser/tab"_s)), u"browser"_s);
    EXPECT_EQ(idOf(entries.ofProgram(home + u"/Apps/Player/lib/decoder"_s)), u"player"_s);
    EXPECT_EQ(entries.ofProgram(home + u"/Apps/Other/decoder"_s), nullptr);
}

TEST_F(DesktopEntriesTest, OfSeveralForOneProgramTheVisibleAndSimplestIsUsed) {
    write(u"bin/office"_s, "");
    writeEntry(u"mine/a-writer.desktop"_s, u"office --writer %U"_s);
    writeEntry(u"mine/b-hidden.desktop"_s, u"office"_s, "NoDisplay=true\n");
    writeEntry(u"mine/c-start.desktop"_s, u"office %U"_s);
    entries.update();
    EXPECT_EQ(idOf(entries.ofProgram(QFileInfo(at(u"bin/office"_s)).canonicalFilePath())), u"c-start"_s);
}

TEST_F(DesktopEntriesTest, OfLaunchersAndBareInterpretersAreNotTheirs) {
    for (const QString& name : {u"flatpak"_s, u"python3"_s, u"bash"_s}) {
        write(u"bin/"_s + name, "");
    }
    write(u"app/app.py"_s, "");
    writeEntry(u"mine/org.pak.desktop"_s, u"flatpak run org.pak"_s);
    writeEntry(u"mine/python.desktop"_s, u"python3"_s);
    writeEntry(u"mine/shell.desktop"_s, u"bash -c ls"_s);
    writeEntry(u"mine/app.desktop"_s, u"python3 "_s + at(u"app/app.py"_s));
    entries.update();
    const auto of = [&](const QString& name) {
        return entries.ofProgram(QFileInfo(at(name)).canonicalFilePath());
    };
    for (const QString& name : {u"flatpak"_s, u"python3"_s, u"bash"_s}) {
        EXPECT_EQ(of(u"bin/"_s + name), nullptr) << name.toStdString();
    }
    EXPECT_EQ(idOf(of(u"app/app.py"_s)), u"app"_s);
}

TEST_F(DesktopEntriesTest, OfASnapAreFoundByItsName) {
    writeEntry(u"mine/code_url.desktop"_s, u"snap run code"_s);
    writeEntry(u"mine/code_code.desktop"_s, u"snap run code"_s);
    writeEntry(u"mine/tools_b.desktop"_s, u"x"_s);
    writeEntry(u"mine/tools_a.desktop"_s, u"x"_s);
    entries.update();
    EXPECT_EQ(idOf(entries.ofSnap(u"code"_s)), u"code_code"_s);
    EXPECT_EQ(idOf(entries.ofSnap(u"code"_s, u"url"_s)), u"code_url"_s);
    EXPECT_EQ(idOf(entries.ofSnap(u"tools"_s, u"c"_s)), u"tools_a"_s);
    EXPECT_EQ(entries.ofSnap(u"cod"_s), nullptr);
}

TEST_F(DesktopEntriesTest, SurviveWhatIsNoEntry) {
    QDir().mkpath(at(u"mine/folder.desktop"_s));
    ASSERT_TRUE(QFile::link(at(u"mine"_s), at(u"mine/loop"_s)));
    ASSERT_TRUE(QFile::link(u"/dev/null"_s, at(u"mine/null.desktop"_s)));
    ASSERT_TRUE(QFile::link(u"/nonexistent"_s, at(u"mine/dangling.desktop"_s)));
    write(u"mine/huge.desktop"_s, QByteArray(1 << 20, 'x'));
    write(u"mine/.desktop"_s, "[Desktop Entry]\nType=Application\nName=x\n");
    writeEntry(u"mine/noexec.desktop"_s, QString());
    writeEntry(u"mine/missing.desktop"_s, u"/nonexistent/program"_s);
    entries.update();
    EXPECT_NE(entries.withId(u"noexec"_s), nullptr);
    EXPECT_EQ(entries.withId(u"huge"_s), nullptr);
    EXPECT_EQ(entries.ofProgram(u"/nonexistent/program"_s), nullptr);
}

} // namespace Fenwhirl
