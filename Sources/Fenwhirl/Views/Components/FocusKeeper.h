#pragma once

#include <QList>
#include <QPointer>
#include <QQuickItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

// Makes sure that something in a window has the keyboard focus: QML type `FocusKeeper`.
//
//   FocusKeeper { scope: content; first: sidebar }
//
// When the control that had the focus vanishes, is hidden or is disabled, the focus moves to what came in its
// place: the control after it in tab order, or else the one before it. If no control of the window has had
// the focus yet, it moves to `first`. A focus that returns or moves elsewhere in the same turn of the event
// loop is left alone; so are menus and dialogs, which keep the focus themselves.
//
// Put it into a window as an item. Main thread only.

namespace Fenwhirl {

class FocusKeeper : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    // Where controls are looked for: the part of the window that is not covered.
    Q_PROPERTY(QQuickItem* scope MEMBER scope_ NOTIFY scopeChanged FINAL)
    // The control that gets the focus in the beginning, or an item that contains it.
    Q_PROPERTY(QQuickItem* first MEMBER first_ NOTIFY firstChanged FINAL)

public:
    explicit FocusKeeper(QQuickItem* parent = nullptr);

    // The tab stops in an item, in tab order.
    Q_INVOKABLE [[nodiscard]] static QList<QQuickItem*> stops(QQuickItem* item);

    // Tells assistive technology that the window is active, if it is. Qt often does not when a program's first window opens.
    // Being told twice changes nothing.
    Q_INVOKABLE void reportActive();

Q_SIGNALS:
    // The focus moved from a control that no longer exists to the one with this accessible name.
    void focusMoved(const QString& name);
    void scopeChanged();
    void firstChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void follow();
    void remember(QQuickItem* item);
    void check();
    [[nodiscard]] bool isLost() const;
    [[nodiscard]] QQuickItem* nextFocus() const;

    QPointer<QQuickItem> scope_;
    QPointer<QQuickItem> first_;
    QPointer<QQuickWindow> window_;
    QPointer<QQuickItem> last_;
    QMetaObject::Connection visible_;
    QMetaObject::Connection enabled_;
    // The ancestors of the control that had the focus last. When it vanishes, the focus falls to one of them.
    QList<QPointer<QQuickItem>> around_;
    // The tab stops at that time, and the index of the control among them.
    QList<QPointer<QQuickItem>> chain_;
    qsizetype place_ = -1;
    QTimer check_;
};

} // namespace Fenwhirl
