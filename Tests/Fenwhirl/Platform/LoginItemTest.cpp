#include "Fenwhirl/Platform/LoginItem.h"

#include "Fenwhirl/Platform/LoginItemFile.h"
#include "Support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdlib>
#include <filesystem>

namespace Fenwhirl {

namespace fs = std::filesystem;

namespace {

// What Python's reader of property lists finds in a text, as "label|arguments…|RunAtLoad".
QString readByPython(const QByteArray& propertyList) {
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral("-c"),
                  QStringLiteral("import plistlib, sys\n"
                                 "p = plistlib.load(sys.stdin.buffer, fmt=plistlib.FMT_XML)\n"
                                 "assert set(p) == {'Label', 'ProgramArguments', 'RunAtLoad'}\n"
                                 "t = '|'.join([p['Label'], *p['ProgramArguments'], str(p['RunAtLoad'])])\n"
                                 "sys.stdout.buffer.write(t.encode())")});
    python.write(propertyList);
    python.closeWriteChannel();
    python.waitForFinished();
    return QString::fromUtf8(python.readAllStandardOutput());
}

// The program that GLib's reader of desktop entries finds in an entry.
QString readByGLib(const QByteArray& entry) {
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral("-c"),
                  QStringLiteral("import sys\n"
                                 "from gi.repository import GLib\n"
                                 "k = GLib.KeyFile()\n"
                                 "t = sys.stdin.buffer.read().decode()\n"
                                 "k.load_from_data(t, len(t.encode()), 0)\n"
                                 "line = k.get_string('Desktop Entry', 'Exec')\n"
                                 "ok, argv = GLib.shell_parse_argv(line)\n"
                                 "assert len(argv) == 1\n"
                                 "sys.stdout.buffer.write(argv[0].replace('%%', '%').encode())")});
    python.write(entry);
    python.closeWriteChannel();
    python.waitForFinished();
    return QString::fromUtf8(python.readAllStandardOutput());
}

// Gives each test a home folder of its own.
class LoginItemTest : public testing::Test {
protected:
    LoginItemTest() {
        setenv("HOME", folder.path().c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
    }

    TemporaryFolder folder;
};

const char* const entry = ".config/autostart/com.fenwhirl.app.desktop";

} // namespace

TEST(LaunchAgent, LiesInTheFolderOfTheUsersAgents) {
    EXPECT_EQ(launchAgentPath(QStringLiteral("/Users/a")),
              QStringLiteral("/Users/a/Library/LaunchAgents/com.fenwhirl.app.plist"));
}

TEST(LaunchAgent, OpensTheBundleOrTheUsualPlace) {
    EXPECT_EQ(launchAgentProgram(QStringLiteral("/Users/a/Fenwhirl.app")),
              QStringLiteral("/Users/a/Fenwhirl.app"));
    for (const char* path : {"", "/usr/local/bin", "/Users/a/Fenwhirl.app/", "/Users/a/Fenwhirl.APP"}) {
        EXPECT_EQ(launchAgentProgram(QString::fromLatin1(path)),
                  QStringLiteral("/Applications/Fenwhirl.app"));
    }
}

TEST(LaunchAgent, OfACopyOutsideABundleOpensTheUsualPlace) {
    const TemporaryFolder home;
    const QString path =
        QString::fromStdString(home.path("Library/LaunchAgents/com.fenwhirl.app.plist")); // no folder yet
    ASSERT_TRUE(writeLoginItemFile(
        path, launchAgentPropertyList(launchAgentProgram(QStringLiteral("/opt/fenwhirl/bin")))));
    EXPECT_TRUE(loginItemFileExists(path));
    EXPECT_EQ(
        readByPython(QByteArray::fromStdString(home.read("Library/LaunchAgents/com.fenwhirl.app.plist"))),
        QStringLiteral("com.fenwhirl.app|/usr/bin/open|-a|/Applications/Fenwhirl.app|True"));
    EXPECT_TRUE(removeLoginItemFile(path));
    EXPECT_FALSE(loginItemFileExists(path));
}

TEST(LaunchAgent, IsAPropertyListWithThreeEntries) {
    for (const char* path : {"/Applications/Fenwhirl.app", "/Users/ä/M&M's <1> \"x\" ]]> %1/Fenwhirl.app"}) {
        const QString program = QString::fromUtf8(path);
        const auto text = launchAgentPropertyList(program);
        ASSERT_TRUE(text);
        EXPECT_EQ(readByPython(*text),
                  QStringLiteral("com.fenwhirl.app|/usr/bin/open|-a|%1|True").arg(program));
    }
}

TEST(LaunchAgent, PathThatXMLCannotCarryFails) {
    EXPECT_EQ(launchAgentPropertyList(QStringLiteral("/a\u0001.app")), std::nullopt);
}

TEST(AutostartEntry, StartsExactlyTheProgram) {
    for (const char* path : {"/usr/bin/Fenwhirl", "/opt/é è/M&M's \"x\" $HOME `id` \\n %u/Fenwhirl"}) {
        const QString program = QString::fromUtf8(path);
        const auto text = autostartEntry(program);
        ASSERT_TRUE(text);
        EXPECT_EQ(readByGLib(*text), program);
    }
}

TEST(AutostartEntry, PathWithALineBreakFails) {
    EXPECT_EQ(autostartEntry(QStringLiteral("/a\nExec=evil")), std::nullopt);
}

TEST_F(LoginItemTest, IsThereExactlyWhileItsFileExists) {
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_TRUE(LoginItem::setEnabled(true));
    EXPECT_TRUE(LoginItem::isEnabled());
    EXPECT_EQ(readByGLib(QByteArray::fromStdString(folder.read(entry))),
              QCoreApplication::applicationFilePath());
    EXPECT_TRUE(LoginItem::setEnabled(true)); // a second time
    EXPECT_TRUE(LoginItem::setEnabled(false));
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_FALSE(fs::exists(folder.path(entry)));
}

TEST_F(LoginItemTest, RemovingWhatIsNotThereSucceeds) {
    EXPECT_TRUE(LoginItem::setEnabled(false));
}

TEST_F(LoginItemTest, FollowsTheFolderThatTheUserChose) {
    setenv("XDG_CONFIG_HOME", folder.path("chosen").c_str(), 1);
    EXPECT_TRUE(LoginItem::setEnabled(true));
    EXPECT_TRUE(fs::exists(folder.path("chosen/autostart/com.fenwhirl.app.desktop")));
    setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_TRUE(LoginItem::setEnabled(true));
    EXPECT_TRUE(fs::exists(folder.path(entry)));
}

TEST_F(LoginItemTest, FailsWhereAFolderIsInTheWay) {
    fs::create_directories(fs::path(folder.path(entry)) / "full");
    EXPECT_FALSE(LoginItem::setEnabled(true));
    EXPECT_TRUE(LoginItem::isEnabled());
    EXPECT_FALSE(LoginItem::setEnabled(false));
}

TEST_F(LoginItemTest, FailsWhereItsFolderCannotBeMade) {
    folder.write(".config", "a file");
    EXPECT_FALSE(LoginItem::setEnabled(true));
    EXPECT_FALSE(LoginItem::isEnabled());
}

} // namespace Fenwhirl
