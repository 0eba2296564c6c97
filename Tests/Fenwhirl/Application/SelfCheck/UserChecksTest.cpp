#include "Fenwhirl/Application/SelfCheck/UserChecks.h"

#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace Fenwhirl {

namespace fs = std::filesystem;

namespace {

using Outcome = CheckResult::Outcome;

class UserChecksTest : public testing::Test {
protected:
    // What several stores share, as they share a file.
    class Shared final : public PreferencesStore {
    public:
        explicit Shared(UserChecksTest& test) : test_(test) {}

    private:
        [[nodiscard]] std::optional<PreferenceValue> value(const QString& key) const override {
            const auto entry = test_.preferences.find(key);
            return entry == test_.preferences.end() ? std::nullopt : std::optional(entry->second);
        }

        void store(const QString& key, std::optional<PreferenceValue> value) override {
            if (key == test_.lostKey || (!value && test_.keepsEverything)) {
                return;
            }
            if (value) {
                test_.preferences.insert_or_assign(key, *value);
            } else {
                test_.preferences.erase(key);
            }
        }

        UserChecksTest& test_;
    };

    TemporaryFolder folder;
    PreferenceValues preferences = {{QStringLiteral("theme"), QStringLiteral("dark")}};
    QString lostKey;
    bool keepsEverything = false;
    int timesRemoved = 0;
    std::string place = folder.path("Library/LaunchAgents/item.plist");
    bool canWriteItem = true;
    bool canRemoveItem = true;
    Notifier::Delivery delivery = Notifier::Delivery::taken;
    QString shown;

    UserCheckServices services() {
        return {.openPreferences = [this] { return std::make_unique<Shared>(*this); },
                .removePreferences = [this] { ++timesRemoved; },
                .loginItemPath = place,
                .isLoginItemEnabled = [this] { return fs::exists(place); },
                .setLoginItemEnabled = [this](bool on) { return on ? writeItem() : removeItem(); },
                .notify =
                    [this](const QString& /*title*/, const QString& message) {
                        shown = message;
                        return delivery;
                    }};
    }

    bool writeItem() {
        if (!canWriteItem) {
            return false;
        }
        fs::create_directories(fs::path(place).parent_path());
        folder.write("Library/LaunchAgents/item.plist", "ours");
        return true;
    }

    bool removeItem() {
        if (!canRemoveItem) {
            return false;
        }
        fs::remove(place);
        return true;
    }

    CheckResult of(const char* name) {
        for (const SelfCheck& check : userChecks(services())) {
            if (check.name == QLatin1String(name)) {
                return check.run();
            }
        }
        ADD_FAILURE() << name;
        return CheckResult::skip({});
    }

    void placeItem(const std::string& contents) {
        fs::create_directories(fs::path(place).parent_path());
        folder.write("Library/LaunchAgents/item.plist", contents);
    }

    [[nodiscard]] std::string item() const { return folder.read("Library/LaunchAgents/item.plist"); }
};

} // namespace

TEST_F(UserChecksTest, PreferencesComeBackAndAreRemoved) {
    const PreferenceValues present = preferences;
    EXPECT_EQ(of("preferences").outcome, Outcome::pass);
    EXPECT_EQ(preferences, present);
    EXPECT_EQ(timesRemoved, 1);
}

TEST_F(UserChecksTest, APreferenceThatIsLostIsNamed) {
    lostKey = QStringLiteral("selfCheck.number");
    EXPECT_EQ(of("preferences"), CheckResult::fail(QStringLiteral("did not come back: number")));
    EXPECT_EQ(timesRemoved, 1);
}

TEST_F(UserChecksTest, APreferenceThatStaysIsAFailure) {
    keepsEverything = true;
    EXPECT_EQ(of("preferences").outcome, Outcome::fail);
}

TEST_F(UserChecksTest, ALoginItemIsWrittenAndRemovedWithTheFoldersMadeForIt) {
    EXPECT_EQ(of("login item").outcome, Outcome::pass);
    EXPECT_FALSE(fs::exists(folder.path("Library")));
}

TEST_F(UserChecksTest, AFolderThatWasThereStays) {
    fs::create_directories(folder.path("Library"));
    EXPECT_EQ(of("login item").outcome, Outcome::pass);
    EXPECT_TRUE(fs::exists(folder.path("Library")));
    EXPECT_FALSE(fs::exists(folder.path("Library/LaunchAgents")));
}

TEST_F(UserChecksTest, AnExistingLoginItemIsTheVerySameAfterwards) {
    placeItem("edited by hand");
    fs::permissions(place, fs::perms(0640));
    const auto time = fs::last_write_time(place);
    EXPECT_EQ(of("login item").outcome, Outcome::pass);
    EXPECT_EQ(item(), "edited by hand");
    EXPECT_EQ(fs::status(place).permissions(), fs::perms(0640));
    EXPECT_TRUE(fs::last_write_time(place) == time);
    EXPECT_FALSE(fs::exists(keptLoginItemPath(place)));
}

TEST_F(UserChecksTest, ALoginItemThatIsALinkStaysOne) {
    placeItem("");
    fs::remove(place);
    const std::string target = folder.write("dotfile", "kept elsewhere");
    fs::create_symlink(target, place);
    EXPECT_EQ(of("login item").outcome, Outcome::pass);
    EXPECT_EQ(fs::read_symlink(place), target);
    EXPECT_EQ(folder.read("dotfile"), "kept elsewhere");
}

TEST_F(UserChecksTest, ALoginItemComesBackHoweverTheTrialGoes) {
    placeItem("edited by hand");
    canWriteItem = false;
    EXPECT_EQ(of("login item").outcome, Outcome::fail);
    EXPECT_EQ(item(), "edited by hand");
    canWriteItem = true;
    canRemoveItem = false;
    EXPECT_EQ(of("login item").outcome, Outcome::fail);
    EXPECT_EQ(item(), "edited by hand");
}

TEST_F(UserChecksTest, WhatAKilledCheckHasLeftIsPutBack) {
    placeItem("ours");
    fs::copy(place, keptLoginItemPath(place));
    folder.write("Library/LaunchAgents/item.plist.self-check", "edited by hand");
    EXPECT_EQ(of("login item").outcome, Outcome::pass);
    EXPECT_EQ(item(), "edited by hand");
    EXPECT_FALSE(fs::exists(keptLoginItemPath(place)));
}

TEST_F(UserChecksTest, ANotificationIsTakenOrNot) {
    EXPECT_EQ(of("notification").outcome, Outcome::pass);
    EXPECT_TRUE(shown.startsWith(QStringLiteral("Self-check")));
    delivery = Notifier::Delivery::refused;
    EXPECT_EQ(of("notification").outcome, Outcome::fail);
    delivery = Notifier::Delivery::noService;
    EXPECT_EQ(of("notification").outcome, Outcome::skip);
}

} // namespace Fenwhirl
