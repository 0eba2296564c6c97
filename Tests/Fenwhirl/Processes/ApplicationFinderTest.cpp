#include "Fenwhirl/Processes/ApplicationFinder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <map>

namespace Fenwhirl {

using namespace Qt::StringLiterals;

namespace {

struct FakeProcess {
    QString group;
    QStringList arguments;
    QString folder;
    std::optional<QString> flatpak;
};

class ApplicationFinderTest : public testing::Test {
protected:
    void addEntry(const QString& id, const QString& exec, const QByteArray& more = {}) const {
        QFile file(folder.filePath(id + u".desktop"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nName=Name of " + id.toUtf8() + "\nName[de]=Name von " +
                   id.toUtf8() + "\nExec=" + exec.toUtf8() + '\n' + more);
    }

    [[nodiscard]] QString addProgram(const QString& name) const {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return QFileInfo(file).canonicalFilePath();
    }

    std::optional<FoundApplication> find(qint32 pid, const QString& path, ProcessStart start = 1) {
        finder.beginSample(locales);
        return finder.applicationOf(pid, start, path);
    }

    QString nameOf(qint32 pid, const QString& path) {
        const auto found = find(pid, path);
        return found ? found->name : u"none"_s;
    }

    QTemporaryDir folder;
    QStringList locales;
    std::map<qint32, FakeProcess> processes;
    int reads = 0;
    ApplicationFinder finder{DesktopEntries({folder.path()}, {folder.path()}, {}),
                             [this](qint32 pid) -> std::optional<ProcessOrigin> {
                                 ++reads;
                                 const auto found = processes.find(pid);
                                 if (found == processes.end()) {
                                     return std::nullopt;
                                 }
                                 const FakeProcess& process = found->second;
                                 return ProcessOrigin{.controlGroup = process.group,
                                                      .arguments = [&process] { return process.arguments; },
                                                      .workingFolder = [&process] { return process.folder; },
                                                      .flatpak = [&process] { return process.flatpak; }};
                             }};
};

} // namespace

TEST_F(ApplicationFinderTest, TheUnitOfAProcessCountsMoreThanItsProgram) {
    addEntry(u"org.app"_s, u"nothing"_s);
    addEntry(u"tool"_s, addProgram(u"tool"_s));
    processes[1].group = u"/user.slice/app.slice/app-gnome-org.app-17.scope"_s;
    const auto found = find(1, folder.filePath(u"tool"_s));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, u"Name of org.app"_s);
    EXPECT_EQ(found->file, folder.filePath(u"org.app.desktop"_s));
    EXPECT_TRUE(found->canQuit);
}

TEST_F(ApplicationFinderTest, AnUnknownUnitLeavesTheProgram) {
    const QString tool = addProgram(u"tool"_s);
    addEntry(u"tool"_s, tool);
    for (const QString& group : {u"/app-gnome-unknown-17.scope"_s, u"/app-\xff\x01\n-1.scope"_s, QString(),
                                 u"/snap.none.none.scope"_s}) {
        processes[1].group = group;
        EXPECT_EQ(nameOf(1, tool), u"Name of tool"_s) << group.toStdString();
    }
}

TEST_F(ApplicationFinderTest, TheNameIsThatOfTheLanguage) {
    const QString tool = addProgram(u"tool"_s);
    addEntry(u"tool"_s, tool);
    processes[1] = {};
    EXPECT_EQ(nameOf(1, tool), u"Name of tool"_s);
    locales = {u"de"_s};
    EXPECT_EQ(nameOf(1, tool), u"Name von tool"_s);
}

TEST_F(ApplicationFinderTest, AnotherUsersProcessBelongsToNone) {
    const QString tool = addProgram(u"tool"_s);
    addEntry(u"tool"_s, tool);
    EXPECT_FALSE(find(1, tool));
    processes[1] = {};
    finder.beginSample({});
    EXPECT_FALSE(finder.applicationOf(1, std::nullopt, tool)) << "it has ended";
}

TEST_F(ApplicationFinderTest, SnapsAndFlatpaksAreFoundWithoutAUnit) {
    addEntry(u"code_code"_s, u"snap run code"_s);
    addEntry(u"org.pak"_s, u"flatpak run org.pak"_s);
    processes[1] = {};
    processes[2].flatpak = u"org.pak"_s;
    EXPECT_EQ(nameOf(1, u"/snap/code/17/usr/share/code/code"_s), u"Name of code_code"_s);
    EXPECT_EQ(nameOf(1, u"/snap/other/17/x"_s), u"none"_s);
    EXPECT_EQ(nameOf(2, u"/app/bin/pak"_s), u"Name of org.pak"_s);
    EXPECT_EQ(nameOf(2, u"/usr/bin/pak"_s), u"none"_s);
}

TEST_F(ApplicationFinderTest, AnInterpreterIsItsScript) {
    const QString script = addProgram(u"app.py"_s);
    addEntry(u"app"_s, script);
    processes[1] = {
        .group = {}, .arguments = {u"python3"_s, u"app.py"_s}, .folder = folder.path(), .flatpak = {}};
    EXPECT_EQ(nameOf(1, u"/usr/bin/python3.11"_s), u"Name of app"_s);
    processes[2] = {
        .group = {}, .arguments = {u"[renamed]"_s, u"/somewhere/job.py"_s}, .folder = u"/"_s, .flatpak = {}};
    const auto job = find(2, u"/usr/bin/python3.11"_s);
    ASSERT_TRUE(job);
    EXPECT_EQ(job->name, u"job.py"_s);
    EXPECT_EQ(job->file, QString());
    EXPECT_FALSE(job->canQuit);
    for (const QStringList& arguments :
         {QStringList(), QStringList{QString()}, QStringList{u"python3"_s, u"-c"_s, u"x"_s}}) {
        processes[3].arguments = arguments;
        EXPECT_EQ(nameOf(3, u"/usr/bin/python3.11"_s), u"none"_s);
    }
}

TEST_F(ApplicationFinderTest, TheDesktopItselfIsProtected) {
    const QString panel = addProgram(u"xfce4-panel"_s);
    addEntry(u"panel-preferences"_s, panel);
    const QString hidden = addProgram(u"hidden"_s);
    addEntry(u"hidden"_s, hidden, "NoDisplay=true\n");
    const QString shell = addProgram(u"shell"_s);
    addEntry(u"shell"_s, shell);
    processes[1] = processes[2] = {};
    processes[3].group = u"/user@1000.service/session.slice/shell.service"_s;
    EXPECT_FALSE(find(1, panel)->canQuit);
    EXPECT_FALSE(find(2, hidden)->canQuit);
    EXPECT_FALSE(find(3, shell)->canQuit);
}

TEST_F(ApplicationFinderTest, AsksSeldomAndNoticesAMoveAndAnotherProcess) {
    const QString tool = addProgram(u"tool"_s);
    addEntry(u"tool"_s, tool);
    addEntry(u"other"_s, u"nothing"_s);
    processes[1] = {};
    for (int look = 0; look < 100; ++look) {
        EXPECT_TRUE(find(1, tool));
    }
    EXPECT_LT(reads, 25);
    processes[1].group = u"/app-other-1.scope"_s;
    for (int look = 0; look < 8; ++look) {
        static_cast<void>(find(1, tool));
    }
    EXPECT_EQ(nameOf(1, tool), u"Name of other"_s);
    processes[1].group.clear();
    EXPECT_EQ(find(1, tool, 2)->name, u"Name of tool"_s) << "another one that was given the number";
    EXPECT_FALSE(find(1, u"/bin/elsewhere"_s, 2)) << "it runs another program now";
}

} // namespace Fenwhirl
