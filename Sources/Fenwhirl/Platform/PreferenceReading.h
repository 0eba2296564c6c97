// Stored values read as the type that is asked for.
//
// The same on every system, by the rules that macOS has for its preferences: people set them by hand, in
// whatever type comes first, and a "80" or a 1 says well enough what is meant. A value that is absent stays
// absent. Pure; any thread.

#pragma once

#include "Fenwhirl/Platform/PreferencesText.h"

#include <optional>
#include <variant>

// A number itself; yes and no are 1 and 0; a text is the number that it spells with a decimal point. What
// spells none is 0.
[[nodiscard]] std::optional<double> readAsNumber(const std::optional<PreferenceValue>& value);

// A truth value itself; numbers but 0 are yes, and so are "YES", "true" and "1" in any case of letters. All
// else is no.
[[nodiscard]] std::optional<bool> readAsBoolean(const std::optional<PreferenceValue>& value);

// The value when it was stored as this very type.
template <typename Type>
[[nodiscard]] std::optional<Type> storedAs(const std::optional<PreferenceValue>& value) {
    const Type* const stored = value ? std::get_if<Type>(&*value) : nullptr;
    return stored ? std::optional<Type>(*stored) : std::nullopt;
}
