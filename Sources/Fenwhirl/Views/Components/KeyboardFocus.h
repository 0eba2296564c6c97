#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

// Whether the focused control should show its ring: QML singleton `KeyboardFocus` of Fenwhirl.Components.
//
// `active` becomes true with a key that could move or use the focus (any key but a bare modifier), and false
// with a press of a pointer button or a touch, whichever window of the application receives it. People who
// use the mouse therefore never see a ring, and people who use the keyboard always see where the focus is.
//
// It filters the events of the application object. One instance per QML engine, owned by it; main thread
// only.

namespace Fenwhirl {

class KeyboardFocus : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool active READ active NOTIFY activeChanged FINAL)

public:
    explicit KeyboardFocus(QObject* parent = nullptr);

    [[nodiscard]] bool active() const { return active_; }

    // Whether the last key was Shift+Tab.
    Q_INVOKABLE [[nodiscard]] bool backwards() const { return backwards_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void activeChanged();

private:
    void setActive(bool active);

    bool active_ = false;
    bool backwards_ = false;
};

} // namespace Fenwhirl
