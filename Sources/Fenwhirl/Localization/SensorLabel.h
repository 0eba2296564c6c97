// The name of a temperature sensor in the interface language.

#pragma once

#include <QString>

namespace Fenwhirl::SensorLabel {

// `key` is the sensor's SMC key. Well-known sensors have a translated name. In a name derived from the
// key's form ("Graphisme 0f"), the words are translated and the part of the key is not. A letter of the
// key in parentheses ("Processeur (E)") is kept as well, in every script. Accepts any text as key;
// never returns an empty name.
[[nodiscard]] QString name(const QString& key);

} // namespace Fenwhirl::SensorLabel
