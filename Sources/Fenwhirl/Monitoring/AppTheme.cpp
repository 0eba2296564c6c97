#include "Fenwhirl/Monitoring/AppTheme.h"

#include "Fenwhirl/Monitoring/RawValues.h"

namespace {

constexpr RawValueTable<AppTheme, 3> words = {
    {{AppTheme::dark, "dark"}, {AppTheme::light, "light"}, {AppTheme::automatic, "auto"}}};

} // namespace

std::string_view rawValue(AppTheme theme) {
    return rawValueIn(words, theme);
}

std::optional<AppTheme> appThemeFromRawValue(std::string_view text) {
    return caseIn(words, text);
}
