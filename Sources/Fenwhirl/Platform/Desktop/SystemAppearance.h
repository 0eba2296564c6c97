// What the desktop asks of the looks of every program: a dark or a light appearance, and whether things may
// move.
//
// On Linux the settings portal is read asynchronously and watched. Its `color-scheme` 1 is dark; everything
// else, no answer and no portal are light. Motion is unwanted where `enable-animations` is false. On macOS
// they are the effective appearance of the application and the accessibility setting.
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
    // Asks the desktop at once; both answers are false until it has spoken.
    [[nodiscard]] static std::unique_ptr<SystemAppearance> create();

    [[nodiscard]] bool isDark() const { return dark_; }

    [[nodiscard]] bool prefersReducedMotion() const { return reducedMotion_; }

    // What the user chose for this program. While it is not `system`, `isDark` may be the choice's own.
    virtual void choose(AppearanceChoice choice) = 0;

Q_SIGNALS:
    // Either of the two, or both.
    void changed();

protected:
    using QObject::QObject;
    void setDark(bool dark);
    void setReducedMotion(bool reduced);

private:
    bool dark_ = false;
    bool reducedMotion_ = false;
};
