// What kind of window the status item's panel is, and what lies around it. Main thread.
//
// A tool window that takes the keyboard. On macOS it does so while another program stays the active one (a
// click on the status item changes nothing about that), lies above menus and full-screen windows, and whether
// a press is beside it is watched here: nothing of Qt ends it reliably there.
//
// Under Wayland no program may choose the place of its windows: the panel is where the compositor puts it,
// which is mostly the middle of the screen. It is of a fixed size, so that tiling compositors let it float.

#pragma once

#include <QMargins>
#include <QRect>
#include <QString>
#include <QWindow>

#include <functional>
#include <memory>

[[nodiscard]] Qt::WindowFlags statusPanelFlags();

// How the panel stands out from what lies under it.
enum class PanelSurroundings {
    cut,         // windows hide all that is under them: it is cut to its shape (X11 without a compositor)
    translucent, // and nothing is to be added: the system draws the shadow of windows (macOS)
    shadowed,    // its window has a translucent margin in which it draws its own shadow (Linux)
};

// As it is now: compositors come and go.
[[nodiscard]] PanelSurroundings panelSurroundings();

// To be called once for each panel, before it is first shown or placed.
void prepareStatusPanel(QWindow& window);

// Shows the panel before everything else and gives it the keyboard. `token` is the desktop's permission to
// take the focus, empty where there is none.
void showStatusPanel(QWindow& window, const QString& token);

// Lets a press anywhere on the screen reach the shown panel, which it closes. Under Wayland there is no such
// thing: there it closes by losing the focus alone.
void grabPresses(QWindow& window);

// While it lives, calls `outside` when the user presses beside the shown panel or goes to another program, as
// far as `grabPresses` and the loss of the focus do not tell. `item` is the status item's place, whose clicks
// come another way.
class PressWatch {
public:
    // Null where there is nothing of that kind to watch (Linux).
    [[nodiscard]] static std::unique_ptr<PressWatch> begin(QWindow& panel, const QRect& item,
                                                           std::function<void()> outside);

    virtual ~PressWatch() = default;
    PressWatch(const PressWatch&) = delete;
    PressWatch& operator=(const PressWatch&) = delete;

protected:
    PressWatch() = default;
};

// Whether windows lose the focus to whatever the pointer passes over on its way to them, as under most
// compositors of Wayland beside those of GNOME and Plasma: there a panel that nobody has come to yet has not
// been left.
[[nodiscard]] bool focusFollowsPointer();

// Tells the window manager which margins of a window are its shadow, so that it is not placed by them; where
// the system draws shadows, that the window's shape may have changed.
void declareShadow(QWindow& window, const QMargins& margins);
