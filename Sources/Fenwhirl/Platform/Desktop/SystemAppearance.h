// What the desktop asks of the looks of every program: a dark or a light appearance, whether things may
// move, and how large texts are.
//
// On Linux the settings portal is read asynchronously and watched. Its `color-scheme` 1 is dark; everything
// else, no answer and no portal are light. Motion is unwanted where `enable-animations` is false. Texts are
// as large as `text-scaling-factor` says, but under X11, where the desktop says it as the resolution of its
// screens and Qt has made everything larger already. On macOS the first two are the effective appearance of
// the application and the accessibility setting; other programs' texts are never asked to be larger there.
//
// The other way round the program tells what its user chose, so that what the system draws for it (the
// buttons of the title bar, the save panel, menus) looks like the rest. Only macOS draws anything for it.
//
// Threads: main thread only.

#pragma once

#include <QObject>

#include <memory>

enum class AppearanceChoice { system, light, dark };

class SystemAppearance : public QObject {
    Q_OBJECT

public:
    // Asks the desktop at once; until it has spoken, it is light, things move, and texts are as designed.
    [[nodiscard]] static std::unique_ptr<SystemAppearance> create();

    [[nodiscard]] bool isDark() const { return dark_; }

    [[nodiscard]] bool prefersReducedMotion() const { return reducedMotion_; }

    // What the sizes of all texts are multiplied with, from smallestTextScale to largestTextScale. Smaller
    // ones than those designed could not be read, and for larger ones the smallest window has no room.
    [[nodiscard]] double textScale() const { return textScale_; }

    static constexpr double smallestTextScale = 1.0;
    static constexpr double largestTextScale = 2.0;

    // What the user chose for this program. While it is not `system`, `isDark` may be the choice's own.
    virtual void choose(AppearanceChoice choice) = 0;

Q_SIGNALS:
    // Any of the three, or several.
    void changed();

protected:
    using QObject::QObject;
    void setDark(bool dark);
    void setReducedMotion(bool reduced);
    // Taken to the nearest allowed one; what is no number is the one designed for.
    void setTextScale(double scale);

private:
    bool dark_ = false;
    bool reducedMotion_ = false;
    double textScale_ = 1.0;
};
