// Which of the program's languages suits a user whose system lists these preferred languages.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"

#include <QStringList>

// `preferred` holds language tags ("de-CH", "sr-Latn-RS"), most preferred first. The first tag that begins
// with a language of ours decides, whatever follows it; letter case does not matter. Serbian is Cyrillic
// unless the tag names the Latin script. Empty and malformed tags match nothing, and when nothing matches the
// answer is English. Never `automatic`.
[[nodiscard]] AppLanguage languageForPreferred(const QStringList& preferred);
