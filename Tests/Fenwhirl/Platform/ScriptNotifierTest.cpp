// Notifications as macOS shows them, with a fake script tool.

#include "Fenwhirl/Platform/ScriptNotifier.h"

#include "Support/TemporaryFolder.h"
#include "Support/WaitUntil.h"

#include <QFile>

#include <cerrno>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace Fenwhirl {

namespace {

// The fake tool writes to a temporary name and renames the file once it is complete.
QByteArray waitForFile(const std::string& path) {
    QFile file(QString::fromStdString(path));
    EXPECT_TRUE(waitUntil([&file] { return file.exists(); }));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(NotificationStatement, NamesMessageAndTitle) {
    EXPECT_EQ(
        notificationStatement(QStringLiteral("Fenwhirl"), QStringLiteral("Ton Mac chauffe : 93 degrés.")),
        QStringLiteral("display notification \"Ton Mac chauffe : 93 degrés.\" with title \"Fenwhirl\""));
}

TEST(NotificationStatement, QuotesBecomeApostrophesAndBackslashesBlanks) {
    EXPECT_EQ(
        notificationStatement(QStringLiteral("\\\"a\\"), QStringLiteral("\"; do shell script \"id\\\"")),
        QStringLiteral("display notification \"'; do shell script 'id '\" with title \" 'a \""));
}

TEST(ScriptNotifier, GivesTheToolOneStatement) {
    const TemporaryFolder folder;
    const std::string tool = folder.writeScript("osascript", "cd '" + folder.path() +
                                                                 "'; { printf '%s\\n' \"$#\" \"$@\"; } "
                                                                 ">part; mv part seen");
    notifyByScript(QString::fromStdString(tool), QStringLiteral("Fenwhirl"),
                   QStringLiteral("Ton Mac chauffe : \"93\" degrés\\."));
    const QByteArray expected =
        QStringLiteral("2\n-e\ndisplay notification \"Ton Mac chauffe : '93' degrés .\" with "
                       "title \"Fenwhirl\"\n")
            .toUtf8();
    EXPECT_EQ(waitForFile(folder.path("seen")), expected);
}

TEST(ScriptNotifier, DoesNotWaitAndLeavesNoChild) {
    const TemporaryFolder folder;
    const std::string tool = folder.writeScript(
        "osascript", "cd '" + folder.path() + "'; while [ ! -e go ]; do sleep 0.01; done; : >seen");
    notifyByScript(QString::fromStdString(tool), QStringLiteral("a"), QStringLiteral("b"));
    EXPECT_EQ(folder.read("seen"), ""); // the call returned while the tool was still waiting
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    folder.write("go", "");
    (void)waitForFile(folder.path("seen"));
    EXPECT_TRUE(QFile::exists(QString::fromStdString(folder.path("seen"))));
}

TEST(ScriptNotifier, WhatTheToolPrintsGoesNowhere) {
    const TemporaryFolder folder;
    const std::string tool = folder.writeScript(
        "osascript", "cd '" + folder.path() +
                         "'; out=$(readlink /proc/$$/fd/1); error=$(readlink /proc/$$/fd/2); "
                         "echo \"$out $error\" >part; mv part seen");
    notifyByScript(QString::fromStdString(tool), QStringLiteral("a"), QStringLiteral("b"));
    EXPECT_EQ(waitForFile(folder.path("seen")), "/dev/null /dev/null\n");
}

TEST(ScriptNotifier, AToolThatIsNotThereIsNoError) {
    notifyByScript(QStringLiteral("/nonexistent/osascript"), QStringLiteral("a"), QStringLiteral("b"));
}

TEST(ScriptNotifier, WhoeverWaitsLearnsHowTheToolEnded) {
    const TemporaryFolder folder;
    const auto deliver = [](const std::string& tool) {
        return deliverByScript(QString::fromStdString(tool), QStringLiteral("a"), QStringLiteral("b"));
    };
    EXPECT_EQ(deliver(folder.writeScript("good", "test \"$1\" = -e")), Notifier::Delivery::taken);
    EXPECT_EQ(deliver(folder.writeScript("bad", "exit 1")), Notifier::Delivery::refused);
    EXPECT_EQ(deliver(folder.writeScript("killed", "kill -KILL $$")), Notifier::Delivery::refused);
    EXPECT_EQ(deliver(folder.path("missing")), Notifier::Delivery::noService);
}

} // namespace

} // namespace Fenwhirl
