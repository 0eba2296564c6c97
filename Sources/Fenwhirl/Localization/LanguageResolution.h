// Chooses the interface language that suits the preferred languages of the user's system.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"

#include <QStringList>

namespace Fenwhirl {

// `preferred` contains language tags ("de-CH", "sr-Latn-RS"), most preferred first. The first tag that begins
// with one of our languages decides, whatever follows it; case does not matter. Serbian is Cyrillic unless
// the tag names the Latin script. Empty and malformed tags match nothing; when nothing matches, the result is
// English. Never `automatic`.
[[nodiscard]] AppLanguage languageForPreferred(const QStringList& preferred);

} // namespace Fenwhirl
