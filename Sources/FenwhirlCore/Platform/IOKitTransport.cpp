#include "FenwhirlCore/Platform/IOKitTransport.h"

#include <IOKit/IOKitLib.h>

namespace Fenwhirl {

std::unique_ptr<IOKitTransport> IOKitTransport::open() {
    // The look-up releases the matching dictionary.
    const io_service_t service =
        IOServiceGetMatchingService(kIOMainPortDefault, IOServiceMatching("AppleSMC"));
    if (service == 0) {
        return nullptr;
    }
    io_connect_t connection = 0;
    const kern_return_t opened = IOServiceOpen(service, mach_task_self(), 0, &connection);
    IOObjectRelease(service);
    if (opened != KERN_SUCCESS || connection == 0) {
        return nullptr;
    }
    return std::unique_ptr<IOKitTransport>(new IOKitTransport(connection));
}

IOKitTransport::IOKitTransport(std::uint32_t connection) : connection_(connection) {}

IOKitTransport::~IOKitTransport() {
    IOServiceClose(connection_);
}

std::optional<SMCParam> IOKitTransport::call(const SMCParam& input) {
    constexpr std::uint32_t structureMethod = 2; // the user client's single method for all commands
    SMCParam output{};
    std::size_t outputSize = sizeof(output);
    if (IOConnectCallStructMethod(connection_, structureMethod, &input, sizeof(input), &output,
                                  &outputSize) != KERN_SUCCESS) {
        return std::nullopt;
    }
    return output;
}

} // namespace Fenwhirl
