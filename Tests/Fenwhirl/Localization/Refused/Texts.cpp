// Compiled by tests only, each time with another FENWHIRL_CASE: 0 must compile, the others must not.

#include "Fenwhirl/Localization/Localizer.h"

#if FENWHIRL_CASE == 0
const QString shown = localized(u"Ventilateur %@", {QString()}) + localized(u"Ventilateurs");
#elif FENWHIRL_CASE == 1
// Not where a text is asked for, but turned into one behind the build's back.
const TextKey hidden = u"Ventilateurs";
const QString shown = localized(hidden);
#elif FENWHIRL_CASE == 2
// A value too many.
const QString shown = localized(u"Ventilateur %@", {QString(), QString()});
#elif FENWHIRL_CASE == 3
// A value, but no place for it.
const QString shown = localized(u"Ventilateur", {QString()});
#endif
