// How the known hosts of status notifier items treat an item. The protocol cannot be asked for this, so hosts
// are recognised by the names of their programs; each was tried. Pure. Linux only.

#pragma once

#include <QString>

namespace Fenwhirl {

struct StatusHostQuirks {
    // Where the temperature is shown.
    enum class Text {
        inSquare, // small, in a square icon: the host squeezes wider ones into a square (Xfce, LXQt, Plasma)
        inIcon,   // in an icon as wide as it needs
        asLabel,  // in the item's label, which the host writes beside an icon with the symbol alone
    };

    Text text = Text::inSquare;
    bool barIsDark = false; // always, whatever the appearance of the windows
    // The host considers an item without a menu unfinished and does not show it.
    bool requiresMenu = false;
    // The host looks up the owner of an item's well-known name, which it does not need, and drops the item
    // when the answer comes late. Such a host is given the unique name of the item's connection instead,
    // which needs no such lookup. Other hosts do not accept an item by its unique name.
    bool needsUniqueName = false;
    bool reportsClickPosition = true; // a click reports the item's position, rather than always the same one
    // A single click opens the panel only as long as the first click was answered with an error. After a
    // success the host requires a double click.
    bool needsFailedActivate = false;
};

// `program` is the host's name as the kernel reports it. A program that is not known gets quirks that do no
// harm anywhere.
[[nodiscard]] StatusHostQuirks statusHostHabits(const QString& program);

} // namespace Fenwhirl
