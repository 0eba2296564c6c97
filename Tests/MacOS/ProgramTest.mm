#include "Fenwhirl/Platform/Desktop/ApplicationEvents.h"
#include "Fenwhirl/Platform/Desktop/SingleInstance.h"
#include "Fenwhirl/Platform/Desktop/StateFolder.h"
#include "Fenwhirl/Platform/LoginItem.h"
#import "MacTest.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace Fenwhirl {

namespace {

// Gives each test its own home folder.
class ProgramTest : public MacTest {
protected:
    void SetUp() override {
        MacTest::SetUp();
        qputenv("HOME", home_.path().toUtf8());
    }

    void TearDown() override {
        qputenv("HOME", before_);
        MacTest::TearDown();
    }

    [[nodiscard]] QString inHome(const char* path) const { return home_.filePath(QString::fromUtf8(path)); }

private:
    QTemporaryDir home_;
    QByteArray before_ = qgetenv("HOME");
};

} // namespace

TEST_F(ProgramTest, WritesAndRemovesTheLoginItem) {
    const QString agent = inHome("Library/LaunchAgents/com.fenwhirl.app.plist");
    EXPECT_FALSE(LoginItem::isEnabled());
    ASSERT_TRUE(beforeTheEventLoop([] { return LoginItem::setEnabled(true); }));
    EXPECT_TRUE(LoginItem::isEnabled());
    QFile file(agent);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("/Applications/Fenwhirl.app"));
    ASSERT_TRUE(LoginItem::setEnabled(false));
    EXPECT_FALSE(QFileInfo::exists(agent));
}

TEST_F(ProgramTest, RefusesALoginItemForATranslocatedBundle) {
    FakeMac::settings().bundlePath =
        QStringLiteral("/private/var/folders/xy/T/AppTranslocation/4711/d/Fenwhirl.app");
    EXPECT_FALSE(LoginItem::setEnabled(true));
    EXPECT_FALSE(LoginItem::isEnabled());
    EXPECT_TRUE(LoginItem::setEnabled(false));
}

TEST_F(ProgramTest, KeepsItsLockInApplicationSupport) {
    const auto first = SingleInstance::create();
    EXPECT_TRUE(first->becomeFirst());
    EXPECT_TRUE(QFileInfo::exists(inHome("Library/Application Support/com.fenwhirl.app")));
    int raised = 0;
    QObject::connect(first.get(), &SingleInstance::raiseRequested, [&] { ++raised; });
    // A click on the Dock icon, or a second start from the Finder.
    EXPECT_FALSE(ApplicationEvents::shouldHandleReopen(false));
    EXPECT_EQ(raised, 1);
}

TEST_F(ProgramTest, IsNotAskedAgainAfterItsEnd) {
    SingleInstance::create().reset();
    EXPECT_TRUE(ApplicationEvents::shouldHandleReopen(false));
}

} // namespace Fenwhirl
