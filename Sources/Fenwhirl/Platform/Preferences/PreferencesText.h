// The text form of a set of preferences. It preserves the types of the values.
//
// {"theme":"dark","alertsEnabled":true,"warmThreshold":85,"settings":{"data":"e30="},"odd":{"number":"nan"}}
//
// Texts, booleans and finite numbers are plain JSON values. Binary data is base64. Numbers that JSON cannot
// represent are written as words ("nan", "inf", "-inf"). Anything else, put there by a newer version or by a
// person, is kept unchanged. Pure; any thread.

#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <map>
#include <optional>
#include <variant>

namespace Fenwhirl {

// A value of a form that this version does not know. It has no meaning here and is written back unchanged.
struct UnknownPreference {
    QJsonValue value;

    bool operator==(const UnknownPreference&) const = default;
};

using PreferenceValue = std::variant<QString, bool, double, QByteArray, UnknownPreference>;
using PreferenceValues = std::map<QString, PreferenceValue>;

[[nodiscard]] QByteArray encodePreferences(const PreferenceValues& values);

// Absent when the text is not a JSON object.
[[nodiscard]] std::optional<PreferenceValues> decodePreferences(const QByteArray& text);

} // namespace Fenwhirl
