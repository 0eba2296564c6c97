// What the desktop asks of the appearance of every program: dark or light colours, reduced motion, and the
// size of texts.
//
// On Linux the settings portal is read asynchronously and watched. `color-scheme` 1 means dark; anything
// else, no answer and no portal mean light. Motion is reduced where `enable-animations` is false. Texts are
// scaled by `text-scaling-factor`, except under X11, where the desktop states it as the resolution of its
// screens and Qt has already enlarged everything. On macOS the first two are the application's effective
// appearance and the accessibility setting; macOS asks no third-party program for larger texts.
//
// In the other direction, the program reports its user's choice to the system, so that what the system draws
// for it (title bar buttons, the save panel, menus) matches the rest. Only macOS draws anything for it.
//
// Threads: main thread only.

#pragma once

#include <QObject>

#include <memory>

namespace Fenwhirl {

enum class AppearanceChoice { system, light, dark };

class SystemAppearance : public QObject {
    Q_OBJECT

public:
    // Asks the desktop at once. Until it answers, the appearance is light, with motion and texts as designed.
    [[nodiscard]] static std::unique_ptr<SystemAppearance> create();

    [[nodiscard]] bool isDark() const { return dark_; }

    [[nodiscard]] bool prefersReducedMotion() const { return reducedMotion_; }

    // The factor for the sizes of all texts, from smallestTextScale to largestTextScale. Texts smaller than
    // designed would be illegible, and the smallest window has no room for larger ones.
    [[nodiscard]] double textScale() const { return textScale_; }

    static constexpr double smallestTextScale = 1.0;
    static constexpr double largestTextScale = 2.0;

    // The user's choice for this program. Unless it is `system`, `isDark` may reflect the choice.
    virtual void choose(AppearanceChoice choice) = 0;

Q_SIGNALS:
    // At least one of the three values changed.
    void changed();

protected:
    using QObject::QObject;
    void setDark(bool dark);
    void setReducedMotion(bool reduced);
    // Clamps the scale to the allowed range. A value that is not a number becomes 1, the scale of the design.
    void setTextScale(double scale);

private:
    bool dark_ = false;
    bool reducedMotion_ = false;
    double textScale_ = 1.0;
};

} // namespace Fenwhirl
