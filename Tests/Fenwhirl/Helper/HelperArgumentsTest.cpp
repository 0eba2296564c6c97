#include "Fenwhirl/HelperArguments.h"

#include <clocale>
#include <cmath>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace Fenwhirl {

namespace {

[[maybe_unused]] bool isLocaleRefused = false; // simulates a shortage of memory

using HelperArguments::parseIndex;
using HelperArguments::parseRPM;

struct IndexRow {
    std::string text;
    std::optional<std::int64_t> expected;
};

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

TEST(HelperArguments, IndexIsADecimalIntegerAndNothingElse) {
    const IndexRow rows[] = {
        {"0", 0},
        {"1", 1},
        {"9", 9},
        {"10", 10},
        {"00", 0},
        {"007", 7},
        {"+0", 0},
        {"-0", 0},
        {"+1", 1},
        {"-1", -1},
        {"+65536", 65536},
        {"-65536", -65536},
        {"4294967296", 4294967296},
        {"9223372036854775807", highest},
        {"+9223372036854775807", highest},
        {"-9223372036854775808", lowest},
        {"0000000000000000000000000000000000000001", 1},
        {"9223372036854775808", {}},
        {"+9223372036854775808", {}},
        {"-9223372036854775809", {}},
        {"18446744073709551616", {}},
        {"99999999999999999999999999", {}},
        {"", {}},
        {"+", {}},
        {"-", {}},
        {"+-1", {}},
        {"-+1", {}},
        {"--1", {}},
        {"++1", {}},
        {"+ 1", {}},
        {" 1", {}},
        {"1 ", {}},
        {"\t1", {}},
        {"1\n", {}},
        {"1\r", {}},
        {"1 2", {}},
        {"1_000", {}},
        {"1,000", {}},
        {"1'000", {}},
        {"1.0", {}},
        {"1.", {}},
        {".1", {}},
        {"1e3", {}},
        {"0x1", {}},
        {"0b1", {}},
        {"0o7", {}},
        {"1x", {}},
        {"x1", {}},
        {"x", {}},
        {"1-", {}},
        {"1+", {}},
        {"\uFF11", {}},  // full-width 1
        {"\u0661", {}},  // Arabic-Indic 1
        {"\u22121", {}}, // the typographic minus sign
        {"\u00A01", {}}, // no-break space
        {"1\u00A0", {}},
        {"nan", {}},
        {"inf", {}},
        {"auto", {}},
        {std::string("1\0", 2), {}},
        {std::string(100000, '9'), {}},
        {std::string(100000, '0') + "5", 5},
    };
    for (const IndexRow& row : rows) {
        EXPECT_EQ(parseIndex(row.text), row.expected) << '"' << row.text.substr(0, 60) << '"';
    }
}

struct RPMRow {
    std::string text;
    std::optional<double> expected;
};

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(HelperArguments, RpmIsWhatStrtodReadsWholeAndWithoutLeadingBlank) {
    const RPMRow rows[] = {
        {"0", 0.0},
        {"1200", 1200.0},
        {"+1200", 1200.0},
        {"-1200", -1200.0},
        {"2400.5", 2400.5},
        {".5", 0.5},
        {"5.", 5.0},
        {"1e3", 1000.0},
        {"1E3", 1000.0},
        {"1e+3", 1000.0},
        {"1.25e-2", 0.0125},
        {"0x1p10", 1024.0},
        {"0X1.8P1", 3.0},
        {"0x10", 16.0},
        {"inf", infinity},
        {"-INF", -infinity},
        {"Infinity", infinity},
        {"1e999", infinity},
        {"-1e999", -infinity},
        {"1e-999", 0.0},
        {"00001200", 1200.0},
        {"", {}},
        {" 1200", {}},
        {"\t1200", {}},
        {"\n1200", {}},
        {"\v1200", {}},
        {"\f1200", {}},
        {"\r1200", {}},
        {"1200 ", {}},
        {"1200\n", {}},
        {"12,5", {}},
        {"1 200", {}},
        {"1'200", {}},
        {"abc", {}},
        {"1200rpm", {}},
        {"--1", {}},
        {"+-1", {}},
        {"+", {}},
        {"-", {}},
        {".", {}},
        {"e3", {}},
        {"1e", {}},
        {"1e+", {}},
        {"0x", {}},
        {"1.2.3", {}},
        {"infx", {}},
        {"\uFF11\uFF12", {}},
        {"1200\u00A0", {}},
    };
    for (const RPMRow& row : rows) {
        EXPECT_EQ(parseRPM(row.text.c_str()), row.expected) << '"' << row.text << '"';
    }
}

TEST(HelperArguments, RpmMayBeNotANumber) {
    for (const char* text : {"nan", "NaN", "-nan", "nan(1)"}) {
        const auto value = parseRPM(text);
        ASSERT_TRUE(value.has_value()) << text;
        EXPECT_TRUE(std::isnan(*value)) << text;
    }
}

TEST(HelperArguments, RpmReadsAPointUnderALocaleWithCommas) {
    // Locales that developers' systems commonly have. Without any of them the test still compares the
    // results.
    for (const char* name : {"fr_FR.UTF-8", "de_DE.UTF-8", "tr_TR.UTF-8", "C.UTF-8"}) {
        if (std::setlocale(LC_ALL, name) != nullptr) {
            break;
        }
    }
    EXPECT_EQ(parseRPM("12.5"), 12.5);
    EXPECT_EQ(parseRPM("12,5"), std::nullopt);
    std::setlocale(LC_ALL, "C");
}

TEST(HelperArguments, AHundredThousandDigitsAreReadAtOnce) {
    const std::string digits(100000, '7');
    const std::clock_t begin = std::clock();
    EXPECT_EQ(parseRPM(digits.c_str()), infinity);
    EXPECT_EQ(parseRPM(("0." + digits).c_str()), 7.0 / 9.0);
    EXPECT_LT(std::clock() - begin, CLOCKS_PER_SEC / 10); // two numbers at fifty milliseconds each
}

#ifdef FENWHIRL_WRAPPED_NEWLOCALE

TEST(HelperArguments, WithoutALocaleThereIsNoSpeed) {
    isLocaleRefused = true;
    EXPECT_EQ(parseRPM("1200"), std::nullopt);
    isLocaleRefused = false;
    EXPECT_EQ(parseRPM("1200"), 1200);
}

#endif

} // namespace

#ifdef FENWHIRL_WRAPPED_NEWLOCALE

// The linker redirects every call to the __wrap_ function; __real_ is the C library's own.
extern "C" locale_t __wrap_newlocale(int mask, const char* name, locale_t base);
extern "C" locale_t __real_newlocale(int mask, const char* name, locale_t base);

locale_t __wrap_newlocale(int mask, const char* name, locale_t base) {
    return isLocaleRefused ? nullptr : __real_newlocale(mask, name, base);
}

#endif

} // namespace Fenwhirl
