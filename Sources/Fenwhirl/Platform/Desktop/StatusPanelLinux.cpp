#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

#include <QGuiApplication>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace Fenwhirl {

namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

bool isWayland() {
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

// Null unless this is X11.
xcb_connection_t* connection() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* server, const char* name) {
    const auto length = static_cast<std::uint16_t>(std::strlen(name));
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
        xcb_intern_atom_reply(server, xcb_intern_atom(server, 0, length, name), nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

// A compositor owns the selection with this name. The 0 is the only screen that today's servers have.
bool hasCompositor(xcb_connection_t* server) {
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> reply(xcb_get_selection_owner_reply(
        server, xcb_get_selection_owner(server, atom(server, "_NET_WM_CM_S0")), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

// Task bars list every window that does not opt out. Qt keeps the states that are set before it shows the
// window.
void keepOutOfTaskBars(QWindow& window) {
    xcb_connection_t* const server = connection();
    if (server == nullptr) {
        return;
    }
    const std::array states = {atom(server, "_NET_WM_STATE_SKIP_TASKBAR"),
                               atom(server, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        atom(server, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, states.size(), states.data());
}

} // namespace

Qt::WindowFlags statusPanelFlags() {
    return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
}

void prepareStatusPanel(QWindow& /*window*/) {}

// NOLINTBEGIN(performance-unnecessary-value-param): macOS keeps the function
std::unique_ptr<OutsideClickMonitor> OutsideClickMonitor::begin(QWindow& /*panel*/, const QRect& /*item*/,
                                                                std::function<void()> /*outside*/) {
    return nullptr;
}

// NOLINTEND(performance-unnecessary-value-param)

void showStatusPanel(QWindow& window, const QString& token) {
    if (!token.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // Qt's Wayland plugin reads it from the environment
    }
    keepOutOfTaskBars(window);
    window.show();
    window.raise();
    window.requestActivate();
}

void grabPresses(QWindow& window) {
    if (!isWayland()) {
        window.setMouseGrabEnabled(true);
    }
}

bool focusFollowsPointer() {
    const QStringList desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    return isWayland() && !desktop.contains(u"KDE") && !desktop.contains(u"GNOME");
}

PanelCompositing panelSurroundings() {
    if (isWayland()) {
        return PanelCompositing::shadowed;
    }
    xcb_connection_t* const server = connection();
    return server != nullptr && hasCompositor(server) ? PanelCompositing::shadowed : PanelCompositing::cut;
}

void declareShadow(QWindow& window, const QMargins& margins) {
    xcb_connection_t* const server = connection();
    if (server == nullptr) {
        return;
    }
    const double ratio = window.devicePixelRatio();
    std::array<std::uint32_t, 4> pixels{};
    const std::array points = {margins.left(), margins.right(), margins.top(), margins.bottom()};
    for (std::size_t i = 0; i < points.size(); ++i) {
        pixels[i] = static_cast<std::uint32_t>(std::lround(points[i] * ratio));
    }
    xcb_change_property(server, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        atom(server, "_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, pixels.size(),
                        pixels.data());
}

} // namespace Fenwhirl
