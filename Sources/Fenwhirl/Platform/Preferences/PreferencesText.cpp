#include "Fenwhirl/Platform/Preferences/PreferencesText.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>

#include <cmath>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr QLatin1StringView dataMember("data");
constexpr QLatin1StringView numberMember("number");

QString wordForNumber(double number) {
    if (std::isnan(number)) {
        return QStringLiteral("nan");
    }
    return number > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
}

std::optional<PreferenceValue> numberForWord(const QString& word) {
    using Limits = std::numeric_limits<double>;
    for (const double number : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
        if (word == wordForNumber(number)) {
            return number;
        }
    }
    return std::nullopt;
}

struct Encoder {
    QJsonValue operator()(const QString& text) const { return text; }

    QJsonValue operator()(bool value) const { return value; }

    QJsonValue operator()(double number) const {
        if (std::isfinite(number)) {
            return number;
        }
        return QJsonObject{{numberMember, wordForNumber(number)}};
    }

    QJsonValue operator()(const QByteArray& data) const {
        return QJsonObject{{dataMember, QString::fromLatin1(data.toBase64())}};
    }

    QJsonValue operator()(const UnknownPreference& unknown) const { return unknown.value; }
};

std::optional<PreferenceValue> decodeObject(const QJsonObject& object) {
    if (object.size() != 1) {
        return std::nullopt;
    }
    const QJsonValue number = object.value(numberMember);
    if (number.isString()) {
        return numberForWord(number.toString());
    }
    const QJsonValue data = object.value(dataMember);
    if (!data.isString()) {
        return std::nullopt;
    }
    auto decoded =
        QByteArray::fromBase64Encoding(data.toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        return std::nullopt;
    }
    return *decoded;
}

PreferenceValue decodeValue(const QJsonValue& value) {
    if (value.isString()) {
        return value.toString();
    }
    if (value.isBool()) {
        return value.toBool();
    }
    if (value.isDouble()) {
        return value.toDouble();
    }
    return decodeObject(value.toObject()).value_or(UnknownPreference{value});
}

} // namespace

QByteArray encodePreferences(const PreferenceValues& values) {
    QJsonObject object;
    for (const auto& [key, value] : values) {
        object.insert(key, std::visit(Encoder(), value));
    }
    return QJsonDocument(object).toJson();
}

std::optional<PreferenceValues> decodePreferences(const QByteArray& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) {
        return std::nullopt;
    }
    PreferenceValues values;
    const QJsonObject object = document.object();
    for (auto member = object.begin(); member != object.end(); ++member) {
        values.emplace(member.key(), decodeValue(member.value()));
    }
    return values;
}

} // namespace Fenwhirl
