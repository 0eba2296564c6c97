#include "Fenwhirl/Platform/Desktop/Announcement.h"

bool announceBySystem(const QString& /*text*/, bool /*urgent*/) {
    return false;
}
