#include "Fenwhirl/Platform/Desktop/SystemChecks.h"

#import "MacTest.h"

#include <QFile>
#include <QTemporaryDir>

namespace Fenwhirl {

using testing::ElementsAre;
using Kind = MenuItem::Kind;
using Outcome = CheckResult::Outcome;

namespace {

class SystemChecksTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        application_ = NSApplication.sharedApplication;
    }

    void TearDown() override {
        application_.mainMenu = nil;
        application_ = nil;
        MacTest::TearDown();
    }

    // A program that ends so, in the place of the system's; it writes its arguments down.
    std::string tool(const char* end) {
        const QString path = folder_.filePath(QStringLiteral("tool"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("#!/bin/sh\necho \"$*\" >'" + folder_.filePath(QStringLiteral("arguments")).toUtf8() +
                   "'\n" + end + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path.toStdString();
    }

    [[nodiscard]] QByteArray arguments() const {
        QFile file(folder_.filePath(QStringLiteral("arguments")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    CheckResult quarantine(const char* mark) {
        return beforeTheEventLoop(
            [&] { return SystemChecks::quarantine(tool(("echo '" + std::string(mark) + "'").c_str())); });
    }

    static QList<Menu> menus() {
        return {{Menu::Role::application,
                 QStringLiteral("Fenwhirl"),
                 {{Kind::hide, QStringLiteral("Masquer Fenwhirl"), QStringLiteral("h"), {}},
                  {},
                  {Kind::quit, QStringLiteral("Quitter Fenwhirl"), QStringLiteral("q"), {}}}},
                {Menu::Role::help, QStringLiteral("Aide"), {}}};
    }

    NSApplication* application_ = nil;
    QTemporaryDir folder_;
};

} // namespace

TEST_F(SystemChecksTest, TheSignatureIsLookedAtInDepth) {
    EXPECT_EQ(beforeTheEventLoop([&] { return SystemChecks::signature(tool("exit 0")); }).outcome,
              Outcome::pass);
    EXPECT_EQ(arguments(), "--verify --deep --strict /Applications/Fenwhirl.app\n");
    EXPECT_EQ(SystemChecks::signature(tool("exit 1")).outcome, Outcome::fail);
    EXPECT_EQ(SystemChecks::signature(tool("kill -KILL $$")).outcome, Outcome::fail);
    EXPECT_EQ(SystemChecks::signature("/nonexistent/codesign").outcome, Outcome::skip);
}

TEST_F(SystemChecksTest, WhatWasDownloadedHasToBeOpenedOnce) {
    EXPECT_EQ(quarantine("0083;65a0;Browser;4711").outcome, Outcome::fail);
    EXPECT_EQ(arguments(), "-p com.apple.quarantine /Applications/Fenwhirl.app\n");
    EXPECT_EQ(quarantine("00c3;65a0;Browser;4711"),
              CheckResult::pass(QStringLiteral("opened with the user's consent: 00c3;65a0;Browser;4711")));
    EXPECT_EQ(quarantine("").outcome, Outcome::fail);
    EXPECT_EQ(SystemChecks::quarantine(tool("exit 1")), CheckResult::pass(QStringLiteral("none")));
    EXPECT_EQ(SystemChecks::quarantine("/nonexistent/xattr").outcome, Outcome::skip);
}

TEST_F(SystemChecksTest, ATranslocatedBundleIsAFailure) {
    EXPECT_EQ(beforeTheEventLoop(SystemChecks::translocation).outcome, Outcome::pass);
    FakeMac::settings().bundlePath =
        QStringLiteral("/private/var/folders/xy/T/AppTranslocation/4711/d/Fenwhirl.app");
    EXPECT_EQ(SystemChecks::translocation().outcome, Outcome::fail);
}

TEST_F(SystemChecksTest, TheProgramIsAnAccessoryAgainAfterwards) {
    EXPECT_EQ(beforeTheEventLoop(SystemChecks::activationPolicy).outcome, Outcome::pass);
    EXPECT_EQ([application_ activationPolicy], NSApplicationActivationPolicyAccessory);
    FakeMac::settings().changesPolicy = false;
    EXPECT_EQ(SystemChecks::activationPolicy().outcome, Outcome::fail);
}

TEST_F(SystemChecksTest, TheGraphicsProcessorIsNamed) {
    EXPECT_EQ(beforeTheEventLoop(SystemChecks::graphicsDevice),
              CheckResult::pass(QStringLiteral("Apple M2")));
    FakeMac::settings().metalDevice.clear();
    EXPECT_EQ(SystemChecks::graphicsDevice().outcome, Outcome::fail);
}

TEST_F(SystemChecksTest, TheMenusInTheBarAreOurs) {
    const auto bar = beforeTheEventLoop(MenuBar::create);
    EXPECT_EQ(SystemChecks::menuBar(menus()).outcome, Outcome::fail) << "nothing is there yet";
    bar->show(menus());
    EXPECT_EQ(beforeTheEventLoop([] { return SystemChecks::menuBar(menus()); }),
              CheckResult::pass(QStringLiteral("Fenwhirl, Aide")));
    QList<Menu> others = menus();
    others[1].title = QStringLiteral("Hilfe");
    EXPECT_EQ(SystemChecks::menuBar(others).outcome, Outcome::fail);
    others = menus();
    others[0].items[0].title = QStringLiteral("Hide Fenwhirl");
    EXPECT_EQ(SystemChecks::menuBar(others).outcome, Outcome::fail);
    others = menus();
    others[0].items.removeLast();
    EXPECT_EQ(SystemChecks::menuBar(others).outcome, Outcome::fail);
}

TEST_F(SystemChecksTest, AnItemThatCannotBeSeenIsAFailure) {
    EXPECT_EQ(SystemChecks::unplacedStatusItem().outcome, Outcome::fail);
}

} // namespace Fenwhirl
