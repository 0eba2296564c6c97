#include "Fenwhirl/Views/Components/Announcer.h"

#include <utility>

namespace Fenwhirl {

namespace {

SystemAnnouncement& systemAnnouncement() {
    static SystemAnnouncement announcement;
    return announcement;
}

} // namespace

void setSystemAnnouncement(SystemAnnouncement announcement) {
    systemAnnouncement() = std::move(announcement);
}

void Announcer::say(const QString& text, bool urgent) {
    if (text.isEmpty() || (systemAnnouncement() && systemAnnouncement()(text, urgent))) {
        return;
    }
    Q_EMIT said(text);
}

} // namespace Fenwhirl
