#include "Fenwhirl/HelperArguments.h"

#include <charconv>
#include <clocale>
#include <cstdlib>
#include <system_error>
#if __has_include(<xlocale.h>) // where strtod_l lives outside glibc
#    include <xlocale.h>
#endif

namespace Fenwhirl::HelperArguments {

std::optional<std::int64_t> parseIndex(std::string_view text) {
    // from_chars does not accept "+". After one, "-" is refused here; otherwise "+-1" would pass.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, 10);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> parseRPM(const char* text) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    if (*text == '\0' || blanks.find(*text) != std::string_view::npos) {
        return std::nullopt;
    }
    // "C" needs no locale data and cannot be redirected by the environment.
    const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    if (cLocale == nullptr) {
        return std::nullopt;
    }
    char* stop = nullptr;
    const double value = strtod_l(text, &stop, cLocale);
    freelocale(cLocale);
    if (stop == text || *stop != '\0') {
        return std::nullopt;
    }
    return value;
}

} // namespace Fenwhirl::HelperArguments
