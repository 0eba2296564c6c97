#include "FenwhirlCore/Platform/SystemText.h"

#include <algorithm>

namespace Fenwhirl {

std::string sysctlString(std::string_view name, const SystemText& system) {
    constexpr const char* unknown = "inconnu";
    std::size_t size = 0;
    if (!system.value(name, nullptr, size) || size == 0) {
        return unknown;
    }
    std::string text(size, '\0');
    if (!system.value(name, text.data(), size)) {
        return unknown;
    }
    text.resize(std::min(text.find('\0'), text.size()));
    return text;
}

} // namespace Fenwhirl
