// The window properties of the status item's panel, and what surrounds it. Main thread.
//
// The panel is a tool window that takes the keyboard focus. On macOS it does so while another program stays
// active (a click on the status item does not change that), and it is above menus and full-screen windows.
// Clicks outside it are watched for here on macOS, because nothing in Qt reports them reliably there.
//
// Under Wayland no program may choose the positions of its windows. The compositor places the panel, usually
// in the middle of the screen. The panel has a fixed size, so that tiling compositors let it float.

#pragma once

#include <QMargins>
#include <QRect>
#include <QString>
#include <QWindow>

#include <functional>
#include <memory>

namespace Fenwhirl {

[[nodiscard]] Qt::WindowFlags statusPanelFlags();

// How the panel stands out from what is under it.
enum class PanelCompositing {
    cut,         // windows are opaque, so the panel's window is cut to its shape (X11 without a compositor)
    translucent, // windows can be translucent, and the system draws their shadows (macOS)
    shadowed,    // the window has a translucent margin in which it draws its own shadow (Linux)
};

// The state at this moment: compositors start and stop.
[[nodiscard]] PanelCompositing panelSurroundings();

// Call this once for each panel, before it is first shown or positioned.
void prepareStatusPanel(QWindow& window);

// Shows the panel in front of everything else and gives it the keyboard focus. `token` is the desktop's
// permission to take the focus; empty where there is none.
void showStatusPanel(QWindow& window, const QString& token);

// Delivers every click on the screen to the shown panel, so that a click outside can close it. Wayland has no
// such grab; there the panel closes only by losing the focus.
void grabPresses(QWindow& window);

// While this object exists, calls `outside` when the user clicks outside the shown panel or switches to
// another program, as far as `grabPresses` and the loss of focus do not cover this. `item` is the status
// item's geometry; clicks on it are ignored here, because the item reports them.
class OutsideClickMonitor {
public:
    // Null where nothing needs to be watched (Linux).
    [[nodiscard]] static std::unique_ptr<OutsideClickMonitor> begin(QWindow& panel, const QRect& item,
                                                                    std::function<void()> outside);

    virtual ~OutsideClickMonitor() = default;
    OutsideClickMonitor(const OutsideClickMonitor&) = delete;
    OutsideClickMonitor& operator=(const OutsideClickMonitor&) = delete;

protected:
    OutsideClickMonitor() = default;
};

// Whether windows lose the focus to whatever the pointer crosses on its way to them, as under most Wayland
// compositors other than those of GNOME and Plasma. There a loss of focus does not mean that the user has
// left the panel, unless the pointer has been in it.
[[nodiscard]] bool focusFollowsPointer();

// Tells the window manager which margins of a window are its shadow, so that they are ignored in positioning.
// Where the system draws the shadows, tells it that the window's shape may have changed.
void declareShadow(QWindow& window, const QMargins& margins);

} // namespace Fenwhirl
