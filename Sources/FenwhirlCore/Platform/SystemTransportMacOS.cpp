#include "FenwhirlCore/Platform/IOKitTransport.h"

std::unique_ptr<SMCTransport> openSystemTransport() {
    return IOKitTransport::open();
}
