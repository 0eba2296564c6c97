#include "Fenwhirl/Platform/Desktop/SingleInstanceLinux.h"
#include "PrivateBus.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <thread>

namespace {

QDBusConnection noBus() {
    return QDBusConnection(QStringLiteral("not connected"));
}

TEST(SingleInstance, OnlyOneIsFirst) {
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), noBus());
    SingleInstanceLinux second(folder.path(), noBus());
    EXPECT_TRUE(first.becomeFirst());
    EXPECT_FALSE(second.becomeFirst());
}

TEST(SingleInstance, TheNextIsFirstWhenTheFirstIsGone) {
    const QTemporaryDir folder;
    {
        SingleInstanceLinux first(folder.path(), noBus());
        ASSERT_TRUE(first.becomeFirst());
    }
    SingleInstanceLinux next(folder.path(), noBus());
    EXPECT_TRUE(next.becomeFirst());
}

TEST(SingleInstance, RaisesTheFirstThroughThePipeWithoutABus) {
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), noBus());
    ASSERT_TRUE(first.becomeFirst());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    SingleInstanceLinux second(folder.path(), noBus());
    ASSERT_FALSE(second.becomeFirst());
    second.raiseFirst();
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return raised.count() == 1; }));
    second.raiseFirst();
    ASSERT_TRUE(PrivateBus::waitUntil([&] { return raised.count() == 2; }));
}

TEST(SingleInstance, RaisesTheFirstOverTheBusWithTheRightToTheFocus) {
    const QTemporaryDir folder;
    SingleInstanceLinux first(folder.path(), PrivateBus::connect());
    ASSERT_TRUE(first.becomeFirst());
    QSignalSpy raised(&first, &SingleInstance::raiseRequested);
    qputenv("XDG_ACTIVATION_TOKEN", "token7");
    // The call waits for its answer, so the other process needs a thread of its own here.
    std::thread other([&] {
        SingleInstanceLinux second(folder.path(), PrivateBus::connect());
        if (!second.becomeFirst())
            second.raiseFirst();
    });
    const bool heard = PrivateBus::waitUntil([&] { return raised.count() == 1; });
    other.join();
    qunsetenv("XDG_ACTIVATION_TOKEN");
    ASSERT_TRUE(heard);
    EXPECT_EQ(raised.at(0).at(0).toString(), QStringLiteral("token7"));
}

TEST(SingleInstance, ALinkInPlaceOfThePrivateFolderIsNotTrusted) {
    const QTemporaryDir real;
    const QString link = real.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(real.path(), link));
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", link.toLocal8Bit());
    EXPECT_NE(privateRuntimeFolder(), link);
    qputenv("XDG_RUNTIME_DIR", real.path().toLocal8Bit());
    EXPECT_EQ(privateRuntimeFolder(), real.path());
    qputenv("XDG_RUNTIME_DIR", before);
}

} // namespace
