// What the system reports about itself, for the diagnostic report.
//
// This is an interface so that the report can be tested with systems that answer wrongly. Thread-safe: the
// object for this system has no state.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Fenwhirl {

class SystemText {
public:
    // One system value by name ("hw.model", "machdep.cpu.brand_string"), in the manner of sysctlbyname: with
    // a null buffer, stores the size that the value currently needs; otherwise fills the buffer of `size`
    // bytes and stores how many it wrote. False when there is no such value, or when it does not fit.
    [[nodiscard]] virtual bool value(std::string_view name, char* buffer, std::size_t& size) const = 0;

    // Whether this process runs as translated code of another processor architecture (Rosetta).
    [[nodiscard]] virtual bool isTranslated() const = 0;

    // The system's name or version, as the system presents it to its users.
    [[nodiscard]] virtual std::string version() const = 0;

protected:
    ~SystemText() = default;
};

// The system that the program runs on.
[[nodiscard]] const SystemText& thisSystem();

// A text value, up to its first NUL; "inconnu" when it is missing or empty, or when it
// grows between the two calls.
[[nodiscard]] std::string sysctlString(std::string_view name, const SystemText& system);

} // namespace Fenwhirl
