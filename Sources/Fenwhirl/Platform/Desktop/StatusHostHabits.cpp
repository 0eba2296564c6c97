#include "Fenwhirl/Platform/Desktop/StatusHostHabits.h"

StatusHostHabits statusHostHabits(const QString& program) {
    using Text = StatusHostHabits::Text;
    if (program == QStringLiteral("gnome-shell"))
        return {.text = Text::asLabel, .barIsDark = true, .wantsMenu = true, .countsPresses = true};
    if (program == QStringLiteral("waybar"))
        return {.text = Text::inIcon, .barIsDark = true};
    return {};
}
