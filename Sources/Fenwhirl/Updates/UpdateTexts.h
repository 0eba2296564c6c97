// The texts of the update alert, in all languages.
//
// They are here and not in the translation tables, so that the update check remains self-contained.
//
// Pure functions: any thread.

#pragma once

#include <QString>

namespace Fenwhirl {

// `body` has placeholders: "%1" the new version, "%2" the program's name, "%3" the installed version.
struct UpdateTexts {
    QString title;
    QString body;
    QString download;
    QString later;

    bool operator==(const UpdateTexts&) const = default;
};

// The texts in the language with this code ("fr", "en", "sr", "sr-Cyrl", "de", "es", "it", "pt", "ru");
// French for any other code.
[[nodiscard]] UpdateTexts updateTexts(const QString& languageCode);

// The body with its placeholders filled, one after the other in the order of their numbers.
[[nodiscard]] QString updateBody(const UpdateTexts& texts, const QString& version, const QString& name,
                                 const QString& current);

} // namespace Fenwhirl
