#pragma once

#include <QQuickItem>
#include <QRegion>
#include <QtQml/qqmlregistration.h>

// Rounds the window it lies in: QML type `WindowCorners`.
//
//   Window { color: composed ? "transparent" : Theme.card; WindowCorners { radius: composed ? 0 : 14 } }
//
// A transparent window has clear corners only where something composes the windows of the screen; on plain
// X11 they are black. There, with a radius above 0, the window is cut to its shape, a little outside of the
// drawn edge: give it the colour that is to be seen there. Elsewhere nothing happens. Main thread.

namespace Fenwhirl {

// A rectangle at the origin without what lies wholly outside its round corners.
[[nodiscard]] QRegion roundedRegion(QSize size, int radius);

class WindowCorners : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int radius MEMBER m_radius NOTIFY radiusChanged FINAL)

public:
    explicit WindowCorners(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void radiusChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    void cut();

    int m_radius = 0;
};

} // namespace Fenwhirl
