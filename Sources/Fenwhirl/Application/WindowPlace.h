// Where the main window was, for the next start.
//
// A file of its own (JSON: x, y, width, height, maximized), not among the preferences: it changes with every
// move, and losing it costs nothing. A file that is missing or makes no sense is as if nothing were known.
//
// Threads: main thread only; the first two functions are pure.

#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QRect>
#include <QSize>
#include <QString>

#include <optional>

class QWindow;

struct WindowPlace {
    QRect area; // without the frame, in points of the virtual desktop; as it is when not maximised
    bool maximized = false;

    bool operator==(const WindowPlace&) const = default;
};

[[nodiscard]] std::optional<WindowPlace> windowPlaceFrom(const QByteArray& text);

// Where the window may go on the screens that exist now (what each leaves free of bars): where it was, if all
// of it can be seen there. Otherwise moved, and made smaller where it must be, onto the screen that shows
// most of it, or onto the first; never smaller than `least`. Nothing without a screen.
[[nodiscard]] std::optional<QRect> placeOnScreens(const QRect& area, const QList<QRect>& screens,
                                                  QSize least);

// Puts a window where it was and writes down where it is whenever it is hidden or closed, and at the end.
class WindowPlaceKeeper : public QObject {
    Q_OBJECT

public:
    // `window` has not been shown yet, and outlives this.
    WindowPlaceKeeper(QWindow& window, QString file);
    ~WindowPlaceKeeper() override;

    WindowPlaceKeeper(const WindowPlaceKeeper&) = delete;
    WindowPlaceKeeper& operator=(const WindowPlaceKeeper&) = delete;

private:
    void restore();
    void note();
    void save();

    QWindow& window_;
    QString file_;
    WindowPlace place_;
    std::optional<WindowPlace> saved_;
};
