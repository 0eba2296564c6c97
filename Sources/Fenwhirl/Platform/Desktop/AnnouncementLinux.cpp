#include "Fenwhirl/Platform/Desktop/Announcement.h"

namespace Fenwhirl {

bool announceBySystem(const QString& /*text*/, bool /*urgent*/) {
    return false;
}

} // namespace Fenwhirl
