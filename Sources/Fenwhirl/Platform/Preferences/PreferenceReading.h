// Reads a stored value as the requested type.
//
// The conversion is the same on every system and follows the rules of macOS's preferences. People set
// preferences by hand, in whatever type is convenient, and "80" or 1 is clear enough. A value that is absent
// stays absent. Pure; any thread.

#pragma once

#include "Fenwhirl/Platform/Preferences/PreferencesText.h"

#include <optional>
#include <variant>

namespace Fenwhirl {

// A number is returned as it is; true and false are 1 and 0. A text is the number that it spells, with a
// decimal point, or 0 when it spells none. Anything else is 0.
[[nodiscard]] std::optional<double> readAsNumber(const std::optional<PreferenceValue>& value);

// A boolean is returned as it is. A number other than 0 is true, and so are the texts "YES", "true" and "1",
// in upper or lower case. Anything else is false.
[[nodiscard]] std::optional<bool> readAsBoolean(const std::optional<PreferenceValue>& value);

// The value if it was stored as exactly this type.
template <typename Type>
[[nodiscard]] std::optional<Type> storedAs(const std::optional<PreferenceValue>& value) {
    const Type* const stored = value ? std::get_if<Type>(&*value) : nullptr;
    return stored ? std::optional<Type>(*stored) : std::nullopt;
}

} // namespace Fenwhirl
