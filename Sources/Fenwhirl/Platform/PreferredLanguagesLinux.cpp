#include "Fenwhirl/Platform/PosixLanguages.h"
#include "Fenwhirl/Platform/PreferredLanguages.h"

#include <QtGlobal>

#include <array>

namespace Fenwhirl {

QStringList preferredLanguages() {
    // The first variable that is set and not empty names the message locale.
    QString messageLocale;
    static constexpr std::array variables = {"LC_ALL", "LC_MESSAGES", "LANG"};
    for (const char* const variable : variables) {
        messageLocale = qEnvironmentVariable(variable);
        if (!messageLocale.isEmpty()) {
            break;
        }
    }
    return languageTagsFromPosix(qEnvironmentVariable("LANGUAGE"), messageLocale);
}

} // namespace Fenwhirl
