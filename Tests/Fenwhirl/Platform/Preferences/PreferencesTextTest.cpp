#include "Fenwhirl/Platform/Preferences/PreferencesText.h"

#include <QJsonDocument>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace Fenwhirl {

namespace {

const QString key = QStringLiteral("brenor.update.lastCheck");

template <typename Value>
std::optional<PreferenceValue> throughText(const Value& value) {
    const auto values = decodePreferences(encodePreferences({{key, value}}));
    return values && values->contains(key) ? std::optional(values->at(key)) : std::nullopt;
}

} // namespace

TEST(PreferencesText, KeepsTheTypeOfEachValue) {
    EXPECT_EQ(throughText(QStringLiteral("Équilibré \"\\\n\u0001😀")),
              PreferenceValue(QStringLiteral("Équilibré \"\\\n\u0001😀")));
    EXPECT_EQ(throughText(QString()), PreferenceValue(QString(QLatin1String(""))));
    EXPECT_EQ(throughText(true), PreferenceValue(true));
    EXPECT_EQ(throughText(false), PreferenceValue(false));
    EXPECT_EQ(throughText(1.0), PreferenceValue(1.0));
    EXPECT_EQ(throughText(QByteArray("\0\xff{}", 4)), PreferenceValue(QByteArray("\0\xff{}", 4)));
    EXPECT_EQ(throughText(QByteArray("")), PreferenceValue(QByteArray("")));
}

TEST(PreferencesText, KeepsEveryNumberExactly) {
    using Limits = std::numeric_limits<double>;
    for (const double number : {0.1, 1e300, -1.7976931348623157e308, 5e-324, 1763700000.123456,
                                9007199254740993.0, Limits::infinity(), -Limits::infinity()}) {
        EXPECT_EQ(throughText(number), PreferenceValue(number)) << number;
    }
    const auto notANumber = throughText(Limits::quiet_NaN());
    ASSERT_TRUE(notANumber && std::holds_alternative<double>(*notANumber));
    EXPECT_TRUE(std::isnan(std::get<double>(*notANumber)));
}

TEST(PreferencesText, IsReadableForPeople) {
    const QByteArray text = encodePreferences(
        {{QStringLiteral("theme"), QStringLiteral("dark")}, {QStringLiteral("warmThreshold"), 85.0}});
    EXPECT_EQ(text, QByteArray("{\n    \"theme\": \"dark\",\n    \"warmThreshold\": 85\n}\n"));
}

TEST(PreferencesText, TextsThatAreNoSetOfPreferencesYieldNothing) {
    for (const char* text : {"", "{", "[]", "null", "1", "{\"a\":}", "{\"a\":1}x", "{\"a\":1e400}"}) {
        EXPECT_EQ(decodePreferences(text), std::nullopt) << text;
    }
    EXPECT_EQ(decodePreferences(QByteArray(100'000, '[')), std::nullopt);
}

TEST(PreferencesText, ValuesOfUnknownFormAreKeptAsTheyAre) {
    const QByteArray text =
        R"({"a":1,"b":[1,["x"]],"c":null,"d":{"number":"many"},"e":{"data":"%"},"f":{"data":"e30=","x":1},"g":{}})";
    const auto values = decodePreferences(text);
    ASSERT_TRUE(values);
    EXPECT_EQ(values->size(), 7U);
    for (const auto& [name, value] : *values) {
        EXPECT_EQ(std::holds_alternative<UnknownPreference>(value), name != QStringLiteral("a"))
            << name.toStdString();
    }
    EXPECT_EQ(QJsonDocument::fromJson(encodePreferences(*values)), QJsonDocument::fromJson(text));
}

} // namespace Fenwhirl
