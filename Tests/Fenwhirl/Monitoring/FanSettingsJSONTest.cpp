#include "Fenwhirl/Monitoring/FanSettingsJSON.h"

#include "Support/Volume.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace Fenwhirl {

namespace {

const QByteArray oneFan =
    R"({"mode":"sensor","constantRPM":3000,"sensorKey":"TC0P","startTemp":50.5,"maxTemp":90})";

QByteArray withFan(const QByteArray& index, const QByteArray& fan = oneFan) {
    return "{\"" + index + "\":" + fan + "}";
}

} // namespace

TEST(FanSettingsJSON, HasTheStoredForm) {
    const auto json = encodeFanSettings({{0, {FanModeKind::sensor, 3000, "TC0P", 50.5, 90}},
                                         {11, {FanModeKind::constant, 4321.25, "", 50, 90}},
                                         {2, FanSetting()}});
    ASSERT_TRUE(json);
    const auto document = QJsonDocument::fromJson(*json);
    const auto expected = QJsonDocument::fromJson(R"({
        "0": {"mode": "sensor", "constantRPM": 3000, "sensorKey": "TC0P", "startTemp": 50.5, "maxTemp": 90},
        "11": {"mode": "constant", "constantRPM": 4321.25, "sensorKey": "", "startTemp": 50, "maxTemp": 90},
        "2": {"mode": "auto", "constantRPM": 3000, "sensorKey": "", "startTemp": 50, "maxTemp": 90}})");
    EXPECT_EQ(document, expected);
}

TEST(FanSettingsJSON, EmptySettingsAreAnEmptyObject) {
    EXPECT_EQ(encodeFanSettings({}), QByteArray("{}"));
    EXPECT_EQ(decodeFanSettings("{}"), FanSettings());
}

TEST(FanSettingsJSON, ReadsWhatItIsGiven) {
    EXPECT_EQ(decodeFanSettings(withFan("3")),
              (FanSettings{{3, {FanModeKind::sensor, 3000, "TC0P", 50.5, 90}}}));
}

TEST(FanSettingsJSON, EveryFieldIsNeeded) {
    for (const char* missing : {"mode", "constantRPM", "sensorKey", "startTemp", "maxTemp"}) {
        QJsonObject fan = QJsonDocument::fromJson(oneFan).object();
        fan.remove(QLatin1String(missing));
        const QByteArray json = "{\"0\":" + oneFan + ",\"1\":" + QJsonDocument(fan).toJson() + "}";
        EXPECT_EQ(decodeFanSettings(json), std::nullopt) << missing;
    }
}

TEST(FanSettingsJSON, OtherMembersAreIgnored) {
    QByteArray fan = oneFan;
    fan.insert(1, R"("colour":"red","nested":{"a":[1,2]},)");
    EXPECT_EQ(decodeFanSettings(withFan("0", fan)), decodeFanSettings(withFan("0")));
}

TEST(FanSettingsJSON, FieldsOfAnotherTypeFail) {
    for (const char* fan : {R"({"mode":"turbo","constantRPM":1,"sensorKey":"","startTemp":1,"maxTemp":1})",
                            R"({"mode":1,"constantRPM":1,"sensorKey":"","startTemp":1,"maxTemp":1})",
                            R"({"mode":"auto","constantRPM":"1","sensorKey":"","startTemp":1,"maxTemp":1})",
                            R"({"mode":"auto","constantRPM":1,"sensorKey":null,"startTemp":1,"maxTemp":1})",
                            R"({"mode":"auto","constantRPM":1,"sensorKey":"","startTemp":true,"maxTemp":1})",
                            R"({"mode":"auto","constantRPM":1,"sensorKey":"","startTemp":1,"maxTemp":1e400})",
                            R"({"mode":"auto","constantRPM":NaN,"sensorKey":"","startTemp":1,"maxTemp":1})",
                            "[]", "1", "null"}) {
        EXPECT_EQ(decodeFanSettings(withFan("0", fan)), std::nullopt) << fan;
    }
}

TEST(FanSettingsJSON, IndicesAreWholeNumbersAsTheProgramWritesThem) {
    for (const char* index : {"", "a", "1a", "-1", "+1", " 1", "1 ", "01", "0x1", "1.0", "1e0", "2147483648",
                              "99999999999999999999", "\\u0661"}) {
        EXPECT_EQ(decodeFanSettings(withFan(index)), std::nullopt) << index;
    }
    EXPECT_TRUE(decodeFanSettings(withFan("2147483647")));
}

TEST(FanSettingsJSON, MalformedTextsFail) {
    const QByteArray good = withFan("0");
    for (qsizetype length = 0; length < good.size(); ++length) {
        EXPECT_EQ(decodeFanSettings(good.left(length)), std::nullopt) << length;
    }
    const QString text = QString::fromUtf8(good);
    const QByteArray utf16(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    for (const QByteArray& json :
         {QByteArray("[]"), QByteArray("null"), QByteArray("{\"0\":"), good + "x", QByteArray(1000, '\0'),
          utf16, QByteArray(100'000, '['), QByteArray(100'000, '{'), "{\"0\":" + QByteArray(100'000, '[')}) {
        EXPECT_EQ(decodeFanSettings(json), std::nullopt) << json.left(20).toStdString();
    }
}

TEST(FanSettingsJSON, OversizedTextIsRejectedUnread) {
    QByteArray large = withFan("0");
    large.append(QByteArray((1 << 20) - large.size(), ' '));
    EXPECT_TRUE(decodeFanSettings(large));
    large.append(' ');
    EXPECT_EQ(decodeFanSettings(large), std::nullopt);
}

TEST(FanSettingsJSON, LastOfTwoEntriesForAFanCounts) {
    QByteArray second = oneFan;
    second.replace("3000", "1234");
    const auto settings = decodeFanSettings("{\"0\":" + oneFan + ",\"0\":" + second + "}");
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->at(0).constantRPM, 1234);
}

TEST(FanSettingsJSON, HugeFiniteNumbersAreTakenAsTheyAre) {
    const FanSettings settings = {{0, {FanModeKind::sensor, 1e300, "", 1.7e308, -1.7e308}}};
    EXPECT_EQ(decodeFanSettings(encodeFanSettings(settings).value()), settings);
}

TEST(FanSettingsJSON, NumbersThatJSONDoesNotHaveCannotBeEncoded) {
    for (const double number :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(encodeFanSettings({{0, {FanModeKind::sensor, number, "", 1, 1}}}), std::nullopt);
        EXPECT_EQ(encodeFanSettings({{0, {FanModeKind::sensor, 1, "", number, 1}}}), std::nullopt);
        EXPECT_EQ(encodeFanSettings({{0, {FanModeKind::sensor, 1, "", 1, number}}}), std::nullopt);
    }
}

TEST(FanSettingsJSON, EveryTextAndNumberComesBackUnchanged) {
    std::mt19937_64 generator(20261121);
    std::uniform_int_distribution<std::uint32_t> any(0, 0x10FFFF);
    for (int round = 0; round < rounds(20'000, 1'000'000); ++round) {
        QString key;
        for (auto length = generator() % 12; length > 0; --length) {
            char32_t character = round % 2 == 0 ? any(generator) : any(generator) % 0x80;
            if (character >= 0xD800 && character < 0xE000) {
                character = U'"'; // a lone surrogate is not valid text
            }
            key += QString::fromUcs4(&character, 1);
        }
        const auto number = [&] { return static_cast<double>(generator() >> 11U) * 1e-9; };
        const FanSettings settings = {
            {static_cast<int>(generator() >> 33U),
             {allFanModeKinds[generator() % 3], number(), key.toStdString(), number(), -number()}}};
        ASSERT_EQ(decodeFanSettings(encodeFanSettings(settings).value()), settings) << key.toStdString();
    }
}

} // namespace Fenwhirl
