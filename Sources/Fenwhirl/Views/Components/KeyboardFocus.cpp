#include "Fenwhirl/Views/Components/KeyboardFocus.h"

#include <QGuiApplication>
#include <QKeyEvent>

namespace Fenwhirl {

namespace {

bool isModifier(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
        return true;
    default:
        return false;
    }
}

} // namespace

KeyboardFocus::KeyboardFocus(QObject* parent) : QObject(parent) {
    if (QCoreApplication::instance() != nullptr) {
        QCoreApplication::instance()->installEventFilter(this);
    }
}

bool KeyboardFocus::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (isModifier(key)) {
            break;
        }
        // Qt reports Shift+Tab as a key of its own.
        backwards_ = key == Qt::Key_Backtab;
        setActive(true);
        break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        setActive(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void KeyboardFocus::setActive(bool active) {
    if (active == active_) {
        return;
    }
    active_ = active;
    Q_EMIT activeChanged();
}

} // namespace Fenwhirl
