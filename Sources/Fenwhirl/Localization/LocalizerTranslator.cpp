#include "Fenwhirl/Localization/LocalizerTranslator.h"

#include "Fenwhirl/Localization/DialogTexts.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/SystemTerms.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <optional>

namespace Fenwhirl {

namespace {

bool asksForSystemTerms(QLatin1StringView context) {
    return context == QLatin1StringView("MAC_APPLICATION_MENU") ||
           context == QLatin1StringView("SystemTerms");
}

bool isOfQtsDialogs(QLatin1StringView context) {
    static constexpr std::array contexts = {
        QLatin1StringView("QFileDialog"), QLatin1StringView("QFileSystemModel"),
        QLatin1StringView("QPlatformTheme"), QLatin1StringView("QAbstractFileIconProvider")};
    return std::find(contexts.begin(), contexts.end(), context) != contexts.end();
}

std::optional<QString> answer(QLatin1StringView context, const QString& source) {
    if (asksForSystemTerms(context)) {
        return SystemTerms::lookup(source);
    }
    if (isOfQtsDialogs(context)) {
        return DialogTexts::lookup(source);
    }
    return Localizer::lookup(source);
}

} // namespace

QString LocalizerTranslator::translate(const char* context, const char* sourceText,
                                       const char* /*disambiguation*/, int /*n*/) const {
    // A null string makes Qt ask the next translator, and finally use the source text.
    return answer(QLatin1StringView(context), QString::fromUtf8(sourceText)).value_or(QString());
}

} // namespace Fenwhirl
