#include "Fenwhirl/Monitoring/FanSettingsJSON.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QString>

#include <cmath>

namespace Fenwhirl {

namespace {

// Enough for about ten thousand fans; this program writes nothing larger.
constexpr qsizetype largestText = 1 << 20;

constexpr QLatin1StringView modeMember("mode");
constexpr QLatin1StringView constantRPMMember("constantRPM");
constexpr QLatin1StringView sensorKeyMember("sensorKey");
constexpr QLatin1StringView startTempMember("startTemp");
constexpr QLatin1StringView maxTempMember("maxTemp");

// A non-negative whole number exactly as this program writes it: no sign, no leading zero, no blank.
std::optional<int> fanIndex(const QString& text) {
    bool isNumber = false;
    const int index = text.toInt(&isNumber);
    if (!isNumber || index < 0 || QString::number(index) != text) {
        return std::nullopt;
    }
    return index;
}

std::optional<FanSetting> decodeSetting(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    const QJsonValue mode = object.value(modeMember);
    const QJsonValue constantRPM = object.value(constantRPMMember);
    const QJsonValue sensorKey = object.value(sensorKeyMember);
    const QJsonValue startTemp = object.value(startTempMember);
    const QJsonValue maxTemp = object.value(maxTempMember);
    if (!mode.isString() || !constantRPM.isDouble() || !sensorKey.isString() || !startTemp.isDouble() ||
        !maxTemp.isDouble()) {
        return std::nullopt;
    }
    const auto kind = fanModeFromRawValue(mode.toString().toStdString());
    if (!kind) {
        return std::nullopt;
    }
    return FanSetting{*kind, constantRPM.toDouble(), sensorKey.toString().toStdString(), startTemp.toDouble(),
                      maxTemp.toDouble()};
}

} // namespace

std::optional<QByteArray> encodeFanSettings(const FanSettings& settings) {
    QJsonObject object;
    for (const auto& [index, setting] : settings) {
        if (!std::isfinite(setting.constantRPM) || !std::isfinite(setting.startTemp) ||
            !std::isfinite(setting.maxTemp)) {
            return std::nullopt;
        }
        const std::string_view mode = rawValue(setting.mode);
        object.insert(
            QString::number(index),
            QJsonObject{{modeMember, QString::fromLatin1(mode.data(), static_cast<qsizetype>(mode.size()))},
                        {constantRPMMember, setting.constantRPM},
                        {sensorKeyMember, QString::fromStdString(setting.sensorKey)},
                        {startTempMember, setting.startTemp},
                        {maxTempMember, setting.maxTemp}});
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<FanSettings> decodeFanSettings(const QByteArray& json) {
    if (json.size() > largestText) {
        return std::nullopt;
    }
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        return std::nullopt;
    }
    FanSettings settings;
    const QJsonObject object = document.object();
    for (auto member = object.begin(); member != object.end(); ++member) {
        const auto index = fanIndex(member.key());
        const auto setting = decodeSetting(member.value());
        if (!index || !setting) {
            return std::nullopt;
        }
        settings.emplace(*index, *setting);
    }
    return settings;
}

} // namespace Fenwhirl
