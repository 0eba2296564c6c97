#include "Fenwhirl/Platform/PreferredLanguages.h"

#include <QByteArray>

#include <array>
#include <gtest/gtest.h>

namespace Fenwhirl {

namespace {

constexpr std::array variables = {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};

// Removes the languages from the environment, and restores them afterwards.
class PreferredLanguages : public testing::Test {
protected:
    void SetUp() override {
        for (std::size_t i = 0; i < variables.size(); ++i) {
            before_[i] = qgetenv(variables[i]);
            qunsetenv(variables[i]);
        }
    }

    void TearDown() override {
        for (std::size_t i = 0; i < variables.size(); ++i) {
            qputenv(variables[i], before_[i]);
        }
    }

private:
    std::array<QByteArray, variables.size()> before_;
};

QStringList list(const char* tags) {
    return QString::fromLatin1(tags).split(u' ');
}

} // namespace

TEST_F(PreferredLanguages, AreNoneWhereTheEnvironmentNamesNone) {
    EXPECT_EQ(preferredLanguages(), QStringList());
}

TEST_F(PreferredLanguages, EndWithTheLocaleOfMessages) {
    qputenv("LANG", "de_DE.UTF-8");
    EXPECT_EQ(preferredLanguages(), list("de-DE"));
    qputenv("LC_MESSAGES", "it_IT.UTF-8");
    EXPECT_EQ(preferredLanguages(), list("it-IT"));
    qputenv("LC_ALL", "ru_RU.UTF-8");
    EXPECT_EQ(preferredLanguages(), list("ru-RU"));
    qputenv("LC_ALL", "");
    EXPECT_EQ(preferredLanguages(), list("it-IT"));
}

TEST_F(PreferredLanguages, BeginWithTheListOfTheUser) {
    qputenv("LANG", "de_DE.UTF-8");
    qputenv("LANGUAGE", "sr@latin:fr");
    EXPECT_EQ(preferredLanguages(), list("sr-Latn fr de-DE"));
}

} // namespace Fenwhirl
