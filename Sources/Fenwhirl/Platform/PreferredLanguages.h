// The languages that the user's system lists as preferred, most preferred first, as language tags ("de-CH",
// "sr-Latn-RS"). Asked afresh at every call; any thread. Empty when the system names none.
//
// macOS: the list of the system settings. Linux: the variable LANGUAGE, then the locale of messages.

#pragma once

#include <QStringList>

[[nodiscard]] QStringList preferredLanguages();
