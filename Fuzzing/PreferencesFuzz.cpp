// Fuzzes the preferences file with arbitrary bytes: decoding never stops the process, and decoded values
// survive being written again.

#include "Fenwhirl/Platform/Preferences/PreferencesText.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace Fenwhirl {

namespace {

// Equality that treats NaN as equal to NaN.
bool same(const PreferenceValue& a, const PreferenceValue& b) {
    const auto* const numberA = std::get_if<double>(&a);
    const auto* const numberB = std::get_if<double>(&b);
    return a == b || (numberA && numberB && std::isnan(*numberA) && std::isnan(*numberB));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto values =
        decodePreferences(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    if (!values) {
        return 0;
    }
    const auto again = decodePreferences(encodePreferences(*values));
    if (!again || again->size() != values->size()) {
        std::abort();
    }
    for (const auto& [key, value] : *values) {
        const auto entry = again->find(key);
        if (entry == again->end() || !same(entry->second, value)) {
            std::abort();
        }
    }
    return 0;
}

} // namespace Fenwhirl
