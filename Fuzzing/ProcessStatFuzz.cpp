// Fuzzes the parsing of the kernel's line about one process with any text.

#include "Fenwhirl/Platform/Processes/ProcessStatLinux.h"
#include "FuzzInput.h"

#include <string>
#include <string_view>

namespace Fenwhirl {

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::optional<ProcessStat> stat = parseProcessStat(text);
    if (!stat) {
        return 0;
    }
    fuzzExpect(text.find('(' + stat->name + ')') != std::string_view::npos, "the name stands in the text");
    // Another name must not change the other fields.
    const std::optional<ProcessStat> again =
        parseProcessStat(std::string("1 (a b") + std::string(text.substr(text.rfind(')'))));
    fuzzExpect(again && again->name == "a b", "the name is what stands in parentheses");
    fuzzExpect(again && again->ticks == stat->ticks && again->startTicks == stat->startTicks,
               "the fields do not depend on the name");
    return 0;
}

} // namespace Fenwhirl
