#import "Frameworks/Preferences.h"

#include "Fenwhirl/Platform/Preferences/PreferencesStore.h"
#import "MacTest.h"

#include <limits>

namespace Fenwhirl {

using testing::ElementsAre;

namespace {

const QString domain = QStringLiteral("com.fenwhirl.app|kCFPreferencesCurrentUser|kCFPreferencesAnyHost");

class PreferencesTest : public MacTest {
protected:
    void TearDown() override {
        FakeMac::preferences() = {};
        MacTest::TearDown();
    }

    std::unique_ptr<PreferencesStore> store = openUserPreferences();
};

} // namespace

TEST_F(PreferencesTest, KeepEachTypeUnderItsKey) {
    beforeTheEventLoop([&] {
        store->setText(QStringLiteral("brenor.update.lastCheck"), QStringLiteral("né ✓ 🌀"));
        store->setBoolean(QStringLiteral("yes"), true);
        store->setBoolean(QStringLiteral("no"), false);
        store->setNumber(QStringLiteral("number"), 2400.5);
        store->setData(QStringLiteral("data"), QByteArray("a\0b", 3));
    });
    // A dot in a key is kept, and the domain is the program's own.
    EXPECT_EQ(FakeMac::preferences().values.count({domain, QStringLiteral("brenor.update.lastCheck")}), 1U);
    beforeTheEventLoop([&] {
        EXPECT_EQ(store->text(QStringLiteral("brenor.update.lastCheck")), QStringLiteral("né ✓ 🌀"));
        EXPECT_EQ(store->boolean(QStringLiteral("yes")), true);
        EXPECT_EQ(store->boolean(QStringLiteral("no")), false);
        EXPECT_EQ(store->number(QStringLiteral("number")), 2400.5);
        EXPECT_EQ(store->data(QStringLiteral("data")), QByteArray("a\0b", 3));
        EXPECT_FALSE(store->contains(QStringLiteral("nothing")));
    });
}

TEST_F(PreferencesTest, AreWrittenAtOnce) {
    store->setBoolean(QStringLiteral("theme"), true);
    EXPECT_THAT(FakeMac::journal(), ElementsAre("set theme", "synchronise " + domain.toStdString()));
}

TEST_F(PreferencesTest, AreRemoved) {
    store->setBoolean(QStringLiteral("theme"), true);
    store->remove(QStringLiteral("theme"));
    EXPECT_TRUE(FakeMac::preferences().values.empty());
}

TEST_F(PreferencesTest, KeepTheStoredValueWhenAStringCannotBeCreated) {
    store->setText(QStringLiteral("theme"), QStringLiteral("dark"));
    FakeMac::preferences().refusesTexts = true;
    // Neither the value nor the key can be created. The stored value must not be removed because of that.
    store->setText(QStringLiteral("theme"), QStringLiteral("light"));
    FakeMac::preferences().refusesTexts = false;
    EXPECT_EQ(store->text(QStringLiteral("theme")), QStringLiteral("dark"));
}

TEST_F(PreferencesTest, GiveTheNearestNumberWhereOneDoesNotFit) {
    store->setNumber(QStringLiteral("number"), 12.5);
    FakeMac::preferences().losesPrecision = true;
    EXPECT_EQ(store->number(QStringLiteral("number")), 12.5);
}

TEST_F(PreferencesTest, DoNotReadObjectsOfOtherTypesAsTrue) {
    FakeMac::preferences().values[{domain, QStringLiteral("array")}] = @[ @"one", @"two" ];
    EXPECT_TRUE(store->contains(QStringLiteral("array")));
    EXPECT_NE(store->boolean(QStringLiteral("array")), true);
}

} // namespace Fenwhirl
