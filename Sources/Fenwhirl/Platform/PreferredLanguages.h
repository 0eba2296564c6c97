// The user's preferred languages, most preferred first, as language tags ("de-CH", "sr-Latn-RS"). Read from
// the system at every call; any thread. Empty when the system names none.
//
// On macOS this is the list in the system settings; on Linux the variable LANGUAGE, then the message locale.

#pragma once

#include <QStringList>

namespace Fenwhirl {

[[nodiscard]] QStringList preferredLanguages();

} // namespace Fenwhirl
