// The text form of a set of preferences, with the types of the values kept.
//
//   {"theme":"dark","alertsEnabled":true,"warmThreshold":85,"settings":{"data":"e30="},"odd":{"number":"nan"}}
//
// Texts, booleans and finite numbers are JSON's own; binary data is base64, and the numbers that JSON does
// not have are words ("nan", "inf", "-inf"). Whatever else a newer version or a person has put there is kept
// as it is. Pure; any thread.

#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <map>
#include <optional>
#include <variant>

// A value of a form that this version does not know: something to be written again, which says nothing.
struct UnknownPreference {
    QJsonValue value;

    bool operator==(const UnknownPreference&) const = default;
};

using PreferenceValue = std::variant<QString, bool, double, QByteArray, UnknownPreference>;
using PreferenceValues = std::map<QString, PreferenceValue>;

[[nodiscard]] QByteArray encodePreferences(const PreferenceValues& values);

// Nothing for a text that is not such a set at all.
[[nodiscard]] std::optional<PreferenceValues> decodePreferences(const QByteArray& text);
