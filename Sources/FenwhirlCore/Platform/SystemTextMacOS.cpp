// macOS: the kernel's values by name (sysctl).

#include "FenwhirlCore/Platform/SystemText.h"

#include <cstdint>
#include <sys/sysctl.h>

namespace Fenwhirl {

namespace {

class MacOSText final : public SystemText {
public:
    [[nodiscard]] bool value(std::string_view name, char* buffer, std::size_t& size) const override {
        return sysctlbyname(std::string(name).c_str(), buffer, &size, nullptr, 0) == 0;
    }

    [[nodiscard]] bool isTranslated() const override {
        std::int32_t translated = 0;
        std::size_t size = sizeof(translated);
        return sysctlbyname("sysctl.proc_translated", &translated, &size, nullptr, 0) == 0 && translated == 1;
    }

    // The same form as the system's own version string, without linking Foundation.
    [[nodiscard]] std::string version() const override {
        return "Version " + sysctlString("kern.osproductversion", *this) + " (Build " +
               sysctlString("kern.osversion", *this) + ")";
    }
};

} // namespace

const SystemText& thisSystem() {
    static constinit const MacOSText text;
    return text;
}

} // namespace Fenwhirl
