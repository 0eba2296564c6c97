#include "FenwhirlCore/SMCTransport.h"

#include <thread>

void SMCTransport::wait(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}
