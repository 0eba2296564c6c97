#include "FenwhirlCore/Platform/IOKitTransport.h"

namespace Fenwhirl {

std::unique_ptr<SMCTransport> openSystemTransport() {
    return IOKitTransport::open();
}

} // namespace Fenwhirl
