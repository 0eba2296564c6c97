#include "FenwhirlCore/SMCTransport.h"

#include <thread>

namespace Fenwhirl {

void SMCTransport::wait(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

} // namespace Fenwhirl
