// The program's permanent presence: an item in the menu bar (macOS) or in the notification area (Linux) with
// the fan symbol and a short text.
//
// On macOS an NSStatusItem shows symbol and text side by side. On Linux the item is a StatusNotifierItem
// where the desktop has a host for such items, otherwise an icon in the classic tray. GNOME's bar shows the
// whole text beside the symbol. Elsewhere the temperature is drawn beside the symbol, as StatusHostQuirks
// says, and the whole text is the tool tip. Hosts and trays may appear late, disappear, and come back; the
// item follows them.
//
// Threads: main thread only. The item exists from construction to destruction, and is shown as soon as the
// desktop has a place for it, unless it is postponed.

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusIcon.h"

#include <QObject>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Fenwhirl {

// One line of the item's context menu.
struct StatusMenuEntry {
    QString text = {};                  // empty for a separator between two groups
    std::function<void()> choose = {};  // called on the main thread
    std::optional<bool> isCurrent = {}; // set for a radio entry; at most one of a group is current

    [[nodiscard]] bool isSeparator() const { return text.isEmpty(); }
};

using StatusMenu = std::vector<StatusMenuEntry>;

class StatusItem : public QObject {
    Q_OBJECT

public:
    // `symbol` draws the program's symbol where the system has no such symbol of its own.
    [[nodiscard]] static std::unique_ptr<StatusItem> create(SymbolPainter symbol);

    // What a new text means to those who see the old one: `slight` if nobody would notice the difference.
    enum class TextChange { notable, slight };

    // `text` is the complete text ("2 400 tr/min · 63 °C"); `shortText` is the part that fits into an icon
    // ("63°"), empty when there is none. A desktop that asks for the text is given the current one; it is
    // not woken for a slight change where it would show the text only in a tool tip.
    virtual void setText(const QString& text, const QString& shortText,
                         TextChange change = TextChange::notable) = 0;

    // Sets the context menu, in the user's language. Until then, and with a host that does not support menus,
    // a right click acts like any other click. Has no effect in GNOME.
    virtual void setMenu(const StatusMenu& /*menu*/) {}

    // Whether the item's panel is open. macOS then highlights the item, as it does with its own.
    virtual void setOpen(bool /*open*/) {}

    // From now on the item does not appear until `appear` is called, so that a window which opens with the program
    // need not wait for its pictures. To be called before the event loop runs. Has no effect on macOS.
    virtual void postpone() {}

    virtual void appear() {}

    // Whether the item is visible to the user now.
    [[nodiscard]] virtual bool isPlaced() const = 0;

Q_SIGNALS:
    // The user clicked the item. `place` is its geometry in points of the virtual desktop: the item's own
    // rectangle, a single point (empty size) where only the pointer's position is known, or invalid when
    // nothing is known. `token` is the desktop's permission to take the focus; empty where there is none.
    void activated(const QRect& place, const QString& token = {});
    // The item became visible or stopped being visible.
    void placedChanged();

protected:
    using QObject::QObject;
};

} // namespace Fenwhirl
