// Converts the language names of POSIX systems to language tags. Pure; any thread.

#pragma once

#include <QString>
#include <QStringList>

namespace Fenwhirl {

// `languages` is a colon-separated list as in the variable LANGUAGE; `messageLocale` is one locale name. Both
// contain names such as "pt_PT.UTF-8" or "sr_RS@latin". The list is in order of preference and takes
// precedence over `messageLocale`. A script given as "@latin" or "@cyrillic" becomes part of the tag
// ("sr-Latn-RS"); everything else after the territory is left out. Empty names are skipped. "C" and "POSIX"
// request untranslated texts, so anything after them is ignored.
[[nodiscard]] QStringList languageTagsFromPosix(const QString& languages, const QString& messageLocale);

} // namespace Fenwhirl
