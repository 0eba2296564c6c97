// Compiled only by tests, each time with another FENWHIRL_CASE. Case 0 must compile, the others must not.

#include "Fenwhirl/Localization/Localizer.h"

namespace Fenwhirl {

#if FENWHIRL_CASE == 0
const QString shown = localized(u"Ventilateur %@", {QString()}) + localized(u"Ventilateurs");
#elif FENWHIRL_CASE == 1
// A text that becomes a key outside a lookup, so that the build could not gather it.
const TextKey hidden = u"Ventilateurs";
const QString shown = localized(hidden);
#elif FENWHIRL_CASE == 2
// More values than placeholders.
const QString shown = localized(u"Ventilateur %@", {QString(), QString()});
#elif FENWHIRL_CASE == 3
// A value for a text without placeholders.
const QString shown = localized(u"Ventilateur", {QString()});
#endif

} // namespace Fenwhirl
