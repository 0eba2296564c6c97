// The locale that tests run under: that of the environment, as Qt and most programs take it.

#pragma once

#include <clocale>
#include <cstdio>
#include <cstdlib>
#if __has_include(<xlocale.h>) // where uselocale lives outside glibc
#    include <xlocale.h>
#endif

// False, with a word about it, when the environment asks for a locale that this computer does not have: tests
// that are to run under it must not pass under another.
[[nodiscard]] inline bool adoptLocale() {
    if (std::setlocale(LC_ALL, "") != nullptr)
        return true;
    const char* const wanted = std::getenv("LC_ALL");
    std::fprintf(stderr, "there is no locale \"%s\"\n", wanted != nullptr ? wanted : "");
    return wanted == nullptr;
}

// The C library's second opinion on a number is asked for under its own locale: while this lives, in this
// thread.
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
