// What the system says about itself, for the report.
//
// Behind an interface because a report's text is tested with systems that answer wrongly. Thread-safe: this
// system's object has no state.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

class SystemText {
public:
    // One system value by name ("hw.model", "machdep.cpu.brand_string") in the manner of sysctlbyname: with a
    // null buffer, stores the size that the value needs now; else fills the buffer of `size` bytes and stores
    // how many there are. False when there is no such value or when it does not fit.
    [[nodiscard]] virtual bool value(std::string_view name, char* buffer, std::size_t& size) const = 0;

    // Whether this process is being translated from another processor's code (Rosetta).
    [[nodiscard]] virtual bool isTranslated() const = 0;

    // The system's name or version as it shows it to people.
    [[nodiscard]] virtual std::string version() const = 0;

protected:
    ~SystemText() = default;
};

// The system that the program runs on.
[[nodiscard]] const SystemText& thisSystem();

// A text value, up to its first NUL; "inconnu" when it is missing, empty, or changes its size in between.
[[nodiscard]] std::string sysctlString(std::string_view name, const SystemText& system);
