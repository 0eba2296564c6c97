#include "Fenwhirl/Localization/LocalizerTranslator.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/SystemWords.h"

#include <QStringView>

namespace {

bool asksForSystemWords(const char* context) {
    const QLatin1StringView asked(context);
    return asked == QLatin1StringView("MAC_APPLICATION_MENU") || asked == QLatin1StringView("SystemWords");
}

} // namespace

QString LocalizerTranslator::translate(const char* context, const char* sourceText,
                                       const char* /*disambiguation*/, int /*n*/) const {
    const QString source = QString::fromUtf8(sourceText);
    // A null text lets Qt go on to the next translator and at last to the source text.
    return (asksForSystemWords(context) ? SystemWords::lookup(source) : Localizer::lookup(source))
        .value_or(QString());
}
