// The text form of a set of preferences, with the types of the values kept.
//
//   {"theme":"dark","alertsEnabled":true,"warmThreshold":85,"settings":{"data":"e30="},"odd":{"number":"nan"}}
//
// Texts, booleans and finite numbers are JSON's own; binary data is base64, and the numbers that JSON does
// not have are words ("nan", "inf", "-inf"). Pure; any thread.

#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>
#include <variant>

using PreferenceValue = std::variant<QString, bool, double, QByteArray>;
using PreferenceValues = std::map<QString, PreferenceValue>;

[[nodiscard]] QByteArray encodePreferences(const PreferenceValues& values);

// Nothing for a text that is not such a set at all; a single value of an unknown form is left out.
[[nodiscard]] std::optional<PreferenceValues> decodePreferences(const QByteArray& text);
