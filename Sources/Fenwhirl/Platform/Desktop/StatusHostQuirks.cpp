#include "Fenwhirl/Platform/Desktop/StatusHostQuirks.h"

namespace Fenwhirl {

StatusHostQuirks statusHostHabits(const QString& program) {
    using Text = StatusHostQuirks::Text;
    if (program == QStringLiteral("gnome-shell")) {
        return {.text = Text::asLabel,
                .barIsDark = true,
                .requiresMenu = true,
                .needsUniqueName = true,
                .needsFailedActivate = true};
    }
    if (program == QStringLiteral("waybar")) {
        return {.text = Text::inIcon, .barIsDark = true};
    }
    // MATE's notification-area-applet, as the kernel truncates it.
    if (program == QStringLiteral("notification-ar")) {
        return {.text = Text::inIcon, .reportsClickPosition = false};
    }
    return {};
}

} // namespace Fenwhirl
