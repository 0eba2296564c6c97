// Remembers the main window's position and size for the next start.
//
// They are stored in a file of their own (JSON: x, y, width, height, maximized), not among the preferences:
// they change with every move, and losing them does no harm. A missing or invalid file is treated as if no
// position were known.
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

namespace Fenwhirl {

struct WindowGeometry {
    QRect area; // without the frame, in points of the virtual desktop; when maximised, the normal geometry
    bool maximized = false;

    bool operator==(const WindowGeometry&) const = default;
};

[[nodiscard]] std::optional<WindowGeometry> windowPlaceFrom(const QByteArray& text);

// The geometry for the window on the screens that exist now (for each, the area that bars leave free). The
// old geometry, if it is fully visible. Otherwise moved, and shrunk where necessary, onto the screen that
// shows most of it, or onto the first one; never smaller than `least`. Absent if there is no screen.
[[nodiscard]] std::optional<QRect> placeOnScreens(const QRect& area, const QList<QRect>& screens,
                                                  QSize least);

// Restores a window's geometry, and saves the current one whenever the window is hidden
// or closed, and at the end.
class WindowGeometryKeeper : public QObject {
    Q_OBJECT

public:
    // `window` has not been shown yet, and must outlive this object.
    WindowGeometryKeeper(QWindow& window, QString file);
    ~WindowGeometryKeeper() override;

    WindowGeometryKeeper(const WindowGeometryKeeper&) = delete;
    WindowGeometryKeeper& operator=(const WindowGeometryKeeper&) = delete;

private:
    void restore();
    void note();
    void save();

    QWindow& window_;
    QString file_;
    WindowGeometry place_;
    std::optional<WindowGeometry> saved_;
};

} // namespace Fenwhirl
