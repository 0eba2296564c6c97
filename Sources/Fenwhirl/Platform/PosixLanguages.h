// The names that POSIX systems give to languages, read as language tags. Pure; any thread.

#pragma once

#include <QString>
#include <QStringList>

// `languages` is a colon-separated list as in the variable LANGUAGE, `messageLocale` one locale name; both
// hold names such as "pt_PT.UTF-8" or "sr_RS@latin", in that order of preference. A script given as "@latin"
// or "@cyrillic" becomes part of the tag ("sr-Latn-RS"), everything else after the territory is left out.
// Empty names are skipped; "C" and "POSIX" ask for untranslated texts, so nothing after them counts.
[[nodiscard]] QStringList languageTagsFromPosix(const QString& languages, const QString& messageLocale);
