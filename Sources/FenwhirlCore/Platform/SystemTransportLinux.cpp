// Linux: the ways to reach a controller, in the order in which they are tried.

#include "FenwhirlCore/Platform/DriverTransport.h"
#include "FenwhirlCore/Platform/SocketTransport.h"

namespace Fenwhirl {

std::unique_ptr<SMCTransport> openSystemTransport() {
    if (std::unique_ptr<SMCTransport> drivers = openDriverTransport()) {
        return drivers;
    }
    return SocketTransport::open();
}

} // namespace Fenwhirl
