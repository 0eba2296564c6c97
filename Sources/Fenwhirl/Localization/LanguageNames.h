// The languages as their picker lists them. Any thread.

#pragma once

#include "Fenwhirl/Localization/AppLanguage.h"

#include <QString>

namespace Fenwhirl {

// The language's own name for itself, never translated, so that all users find theirs; for `automatic`, its
// name in the current language.
[[nodiscard]] QString nativeName(AppLanguage language);

} // namespace Fenwhirl
