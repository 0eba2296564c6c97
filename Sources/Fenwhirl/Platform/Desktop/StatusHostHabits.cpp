#include "Fenwhirl/Platform/Desktop/StatusHostHabits.h"

StatusHostHabits statusHostHabits(const QString& program) {
    using Text = StatusHostHabits::Text;
    if (program == QStringLiteral("gnome-shell"))
        return {.text = Text::asLabel,
                .barIsDark = true,
                .wantsMenu = true,
                .dropsNames = true,
                .countsPresses = true};
    if (program == QStringLiteral("waybar"))
        return {.text = Text::inIcon, .barIsDark = true};
    // MATE's notification-area-applet, as the kernel truncates it.
    if (program == QStringLiteral("notification-ar"))
        return {.text = Text::inIcon, .tellsPlaces = false};
    return {};
}
