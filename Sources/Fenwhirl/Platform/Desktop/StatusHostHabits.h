// What the known hosts of status notifier items make of an item. Their protocol has no question for it, so
// they are known by the names of their programs; each was tried. Pure. Linux only.

#pragma once

#include <QString>

struct StatusHostHabits {
    // How the temperature gets beside the symbol.
    enum class Text {
        inSquare, // within a square, small: whatever is wider is squeezed into one (Xfce, LXQt, Plasma)
        inIcon,   // in an icon as wide as it needs
        asLabel,  // the bar writes the item's label beside its icon, which is the symbol alone
    };

    Text text = Text::inSquare;
    bool barIsDark = false; // whatever the appearance of the windows
    // An item without a menu is taken for unfinished and not shown.
    bool wantsMenu = false;
    // Waits for the owner of an item's own name, which it does not need, and throws the item away when the
    // answer comes late; the name of the item's connection has no owner to wait for. Others know no such
    // item.
    bool dropsNames = false;
    bool tellsPlaces = true; // a press comes with the item's place, and not always with the same one
    // Two presses open what one should, as long as the first answer to a press was no error.
    bool countsPresses = false;
};

// `program` as the kernel names it; habits that do no harm anywhere for one that is not known.
[[nodiscard]] StatusHostHabits statusHostHabits(const QString& program);
