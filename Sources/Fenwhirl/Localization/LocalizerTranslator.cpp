#include "Fenwhirl/Localization/LocalizerTranslator.h"

#include "Fenwhirl/Localization/Localizer.h"

QString LocalizerTranslator::translate(const char* /*context*/, const char* sourceText,
                                       const char* /*disambiguation*/, int /*n*/) const {
    // A null text lets Qt go on to the next translator and at last to the source text.
    return Localizer::lookup(QString::fromUtf8(sourceText)).value_or(QString());
}
