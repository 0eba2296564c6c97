// The name of a temperature sensor in the interface language.

#pragma once

#include <QString>

namespace SensorLabel {

// `key` is the sensor's SMC key. Well-known sensors have a translated name. Of a name made from the key's shape
// ("Graphisme 0f") the words are translated and the key's part stays, as does a letter of the key in brackets
// ("Processeur (E)"), in every script. Any text is a key; never empty.
[[nodiscard]] QString name(const QString& key);

} // namespace SensorLabel
