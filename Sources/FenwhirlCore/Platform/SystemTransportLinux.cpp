// Linux: the doors to a controller in the order in which they are tried.

#include "FenwhirlCore/Platform/SocketTransport.h"

std::unique_ptr<SMCTransport> openSystemTransport() {
    return SocketTransport::open();
}
