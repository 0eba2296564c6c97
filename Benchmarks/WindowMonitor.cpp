// Reports when windows appear on an X11 display and when they are first drawn, for benchmarks of any program.
// The display must have no window manager, so that the programs' windows are children of the root window.
//
// Prints one line per event until it is ended: "READY", then "SECONDS shown WINDOW WIDTHxHEIGHT" and "SECONDS
// drawn WINDOW", in seconds of the monotonic clock. "drawn" follows once after each "shown". With a window's number as
// argument it prints "drawn" for each drawing of that window instead; drawings that come before the previous one has been
// noticed count as one.

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>

namespace {

double now() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Ignores errors, because a window may be gone before we look at it.
int ignoreError(Display* /*display*/, XErrorEvent* /*error*/) {
    return 0;
}

[[noreturn]] void reportDrawings(Display* display, Window window, int damageEvent) {
    const Damage damage = XDamageCreate(display, window, XDamageReportNonEmpty);
    XSync(display, False);
    std::puts("READY");
    std::fflush(stdout);
    for (;;) {
        XEvent event = {};
        XNextEvent(display, &event);
        if (event.type == damageEvent) {
            std::printf("%.6f drawn %lu\n", now(), window);
            std::fflush(stdout);
            XDamageSubtract(display, damage, None, None);
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    Display* display = XOpenDisplay(nullptr);
    int firstEvent = 0;
    int firstError = 0;
    if (display == nullptr || !XDamageQueryExtension(display, &firstEvent, &firstError)) {
        return 1;
    }
    XSetErrorHandler(ignoreError);
    if (argc > 1) {
        reportDrawings(display, std::strtoul(argv[1], nullptr, 10), firstEvent + XDamageNotify);
    }
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, False);
    std::puts("READY");
    std::fflush(stdout);

    std::map<Window, Damage> watched; // from creation to the first drawing, and again when shown again
    for (;;) {
        XEvent event = {};
        XNextEvent(display, &event);
        const double time = now();
        if (event.type == CreateNotify || event.type == UnmapNotify) {
            const Window window =
                event.type == CreateNotify ? event.xcreatewindow.window : event.xunmap.window;
            if (watched.count(window) == 0) {
                watched[window] = XDamageCreate(display, window, XDamageReportNonEmpty);
            }
        } else if (event.type == MapNotify) {
            Window root = 0;
            int x = 0;
            int y = 0;
            unsigned width = 0;
            unsigned height = 0;
            unsigned border = 0;
            unsigned depth = 0;
            XGetGeometry(display, event.xmap.window, &root, &x, &y, &width, &height, &border, &depth);
            std::printf("%.6f shown %lu %ux%u\n", time, event.xmap.window, width, height);
            std::fflush(stdout);
        } else if (event.type == firstEvent + XDamageNotify) {
            const auto& damage = reinterpret_cast<const XDamageNotifyEvent&>(event);
            std::printf("%.6f drawn %lu\n", time, damage.drawable);
            std::fflush(stdout);
            XDamageDestroy(display, damage.damage);
            watched.erase(damage.drawable);
        } else if (event.type == DestroyNotify) {
            watched.erase(event.xdestroywindow.window);
        }
    }
}
