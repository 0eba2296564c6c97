// The program's permanent presence: an item in the menu bar (macOS) or in the notification area (Linux) with
// the fan symbol and a short text.
//
// On macOS an NSStatusItem shows symbol and text side by side. On Linux the item is a StatusNotifierItem
// where the desktop has a host for such items, else an icon in the classic tray. GNOME's bar shows the whole
// text beside the symbol; elsewhere the temperature is drawn beside it, as StatusHostHabits says, and the
// whole text is the tool tip. Hosts and trays may come late, go, and come back: the item follows them by
// itself.
//
// Threads: main thread only. The item is shown from construction to destruction, as soon as there is a place.

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusIcon.h"

#include <QObject>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

// One line of the item's context menu.
struct StatusMenuEntry {
    QString text = {};                  // empty: a line between two groups
    std::function<void()> choose = {};  // called on the main thread
    std::optional<bool> isCurrent = {}; // one of a group, of which at most one is the current choice

    [[nodiscard]] bool isLine() const { return text.isEmpty(); }
};

using StatusMenu = std::vector<StatusMenuEntry>;

class StatusItem : public QObject {
    Q_OBJECT

public:
    // `symbol` draws the program's symbol where the system has none of that name.
    [[nodiscard]] static std::unique_ptr<StatusItem> create(SymbolPainter symbol);

    // `text` is all there is to say ("2 400 tr/min · 63 °C"); `shortText` is what fits into an icon ("63°"),
    // empty when there is nothing short to say.
    virtual void setText(const QString& text, const QString& shortText) = 0;

    // What a press of the other mouse button offers, in the user's language; until then, and where a host has
    // no place for it, that press is one like any other. Not on macOS and not in GNOME.
    virtual void setMenu(const StatusMenu& /*menu*/) {}

    // Whether the panel that belongs to it is open: macOS then marks the item, as it does with its own.
    virtual void setOpen(bool /*open*/) {}

    // Whether the user can see the item now.
    [[nodiscard]] virtual bool isPlaced() const = 0;

Q_SIGNALS:
    // The user chose the item. `place` is where it is, in points of the virtual desktop: the item's own
    // rectangle, a single point (empty size) where only the pointer's position is known, or invalid when
    // nothing is known. `token` is the desktop's permission to take the focus, empty where there is none.
    void activated(const QRect& place, const QString& token = {});
    // The item became visible, or lost its place.
    void placedChanged();

protected:
    using QObject::QObject;
};
