// What the desktop asks of the looks of every program: a dark or a light appearance, and whether things may
// move.
//
// On Linux the settings portal is read asynchronously and watched. Its `color-scheme` 1 is dark; everything
// else, no answer and no portal are light. Motion is unwanted where `enable-animations` is false. On macOS
// they are the effective appearance of the application and the accessibility setting.
//
// Threads: main thread only.

#pragma once

#include <QObject>

#include <memory>

class SystemAppearance : public QObject {
    Q_OBJECT

public:
    // Asks the desktop at once; both answers are false until it has spoken.
    [[nodiscard]] static std::unique_ptr<SystemAppearance> create();

    [[nodiscard]] bool isDark() const { return dark_; }

    [[nodiscard]] bool prefersReducedMotion() const { return reducedMotion_; }

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
