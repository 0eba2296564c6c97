#pragma once

#include <QQuickItem>
#include <QRegion>
#include <QtQml/qqmlregistration.h>

// Rounds the corners of the window that contains it: QML type `WindowCorners`.
//
//   Window { color: composed ? "transparent" : Theme.card; WindowCorners { radius: composed ? 0 : 14 } }
//
// A transparent window has clear corners only under a compositor; on plain X11 they are black. Under X11,
// with a radius above 0, the window is cut to the rounded shape, a little outside the drawn edge: give it the
// colour that is to be seen there. On other platforms nothing happens. Main thread.

namespace Fenwhirl {

// A rectangle at the origin, without the pixels that lie completely outside its rounded corners.
[[nodiscard]] QRegion roundedRegion(QSize size, int radius);

class WindowCorners : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int radius MEMBER radius_ NOTIFY radiusChanged FINAL)

public:
    explicit WindowCorners(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void radiusChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    void cut();

    int radius_ = 0;
};

} // namespace Fenwhirl
