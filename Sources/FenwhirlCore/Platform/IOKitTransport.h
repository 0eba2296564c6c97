// The AppleSMC kernel service, reached through IOKit (macOS only).
//
// One call is one synchronous round trip to the kernel, without a time limit. The kernel answers every
// process, but refuses writes from processes without root. Threads and ownership: as for `SMCTransport`.

#pragma once

#include "FenwhirlCore/SMCTransport.h"

namespace Fenwhirl {

class IOKitTransport final : public SMCTransport {
public:
    // Null when this computer has no such service, or when the service cannot be opened.
    [[nodiscard]] static std::unique_ptr<IOKitTransport> open();

    ~IOKitTransport() override;
    IOKitTransport(const IOKitTransport&) = delete;
    IOKitTransport& operator=(const IOKitTransport&) = delete;

    [[nodiscard]] std::optional<SMCParam> call(const SMCParam& input) override;

private:
    explicit IOKitTransport(std::uint32_t connection);

    std::uint32_t connection_; // Mach port of the open user client
};

} // namespace Fenwhirl
