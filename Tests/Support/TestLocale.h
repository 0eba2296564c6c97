// The locale that tests run under: the environment's, as Qt and most programs use it.

#pragma once

#include <clocale>
#include <cstdio>
#include <cstdlib>
#if __has_include(<xlocale.h>) // declares uselocale outside glibc
#    include <xlocale.h>
#endif

namespace Fenwhirl {

// Returns false, with a message on standard error, when the environment asks for a locale that this computer
// does not have. Tests that are meant to run under a certain locale must not pass under another.
[[nodiscard]] inline bool adoptLocale() {
    if (std::setlocale(LC_ALL, "") != nullptr) {
        return true;
    }
    const char* const wanted = std::getenv("LC_ALL");
    std::fprintf(stderr, "there is no locale \"%s\"\n", wanted != nullptr ? wanted : "");
    return wanted == nullptr;
}

// During its lifetime this thread uses the "C" locale, so that a test can compare a number with the C
// library's formatting of it.
class InCLocale {
public:
    InCLocale() : locale_(newlocale(LC_ALL_MASK, "C", nullptr)), before_(uselocale(locale_)) {}

    InCLocale(const InCLocale&) = delete;
    InCLocale& operator=(const InCLocale&) = delete;

    ~InCLocale() {
        uselocale(before_);
        freelocale(locale_);
    }

private:
    locale_t locale_;
    locale_t before_;
};

} // namespace Fenwhirl
