#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

// Whether the focused control should show its ring: QML singleton `KeyboardFocus` of Fenwhirl.Components.
//
// `active` becomes true with a key that could move or use the focus (any key but a bare modifier) and false
// with a press of a pointer button or a touch, whichever window of the application receives it. So people who
// use the mouse never see a ring, and people who use the keyboard always know where they are.
//
// It watches the application object's events. One instance per QML engine, owned by it; main thread only.

namespace Fenwhirl {

class KeyboardFocus : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool active READ active NOTIFY activeChanged FINAL)

public:
    explicit KeyboardFocus(QObject* parent = nullptr);

    [[nodiscard]] bool active() const { return m_active; }

    // Whether the last key was Shift and Tab.
    Q_INVOKABLE [[nodiscard]] bool backwards() const { return m_backwards; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void activeChanged();

private:
    void setActive(bool active);

    bool m_active = false;
    bool m_backwards = false;
};

} // namespace Fenwhirl
