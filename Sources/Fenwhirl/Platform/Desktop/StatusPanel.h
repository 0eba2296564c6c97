// What kind of window the status item's panel is, and what lies around it. Main thread.
//
// On Linux a tool window that takes the keyboard. On macOS a popup: a tool window is not shown while its
// program is not the active one, and a click on the status item does not make it so; a popup is shown in any
// case, above the menus, and the system ends it at a click elsewhere. It gets no keyboard.
//
// Under Wayland no program may choose the place of its windows: the panel is where the compositor puts it,
// which is mostly the middle of the screen. It is of a fixed size, so that tiling compositors let it float.

#pragma once

#include <QMargins>
#include <QString>
#include <QWindow>

[[nodiscard]] Qt::WindowFlags statusPanelFlags();

// How the panel stands out from what lies under it.
enum class PanelSurroundings {
    cut,         // windows hide all that is under them: it is cut to its shape (X11 without a compositor)
    translucent, // and nothing is to be added: the system draws the shadow of windows (macOS)
    shadowed,    // its window has a translucent margin in which it draws its own shadow (Linux)
};

// As it is now: compositors come and go.
[[nodiscard]] PanelSurroundings panelSurroundings();

// Shows the panel before everything else and gives it the keyboard. `token` is the desktop's permission to
// take the focus, empty where there is none.
void showStatusPanel(QWindow& window, const QString& token);

// Lets a press anywhere on the screen reach the shown panel, which it closes. Under Wayland there is no such
// thing: there it closes by losing the focus alone.
void grabPresses(QWindow& window);

// Whether windows lose the focus to whatever the pointer passes over on its way to them, as under most
// compositors of Wayland beside those of GNOME and Plasma: there a panel that nobody has come to yet has not
// been left.
[[nodiscard]] bool focusFollowsPointer();

// Tells the window manager which margins of a window are its shadow, so that it is not placed by them.
void declareShadow(QWindow& window, const QMargins& margins);
