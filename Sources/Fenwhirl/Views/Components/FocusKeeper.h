#pragma once

#include <QList>
#include <QPointer>
#include <QQuickItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

// Sees to it that something in a window has the keyboard's focus: QML type `FocusKeeper`.
//
//   FocusKeeper { scope: content; first: sidebar }
//
// When the control that had the focus goes, is hidden or cannot be used any more, the focus goes to what came
// in its place: the one behind it in the order of Tab, or else the one before it. While the window has had
// none yet, it goes to `first`. A focus that comes back or goes elsewhere by itself in the same turn of the
// event loop is left alone; so are menus and dialogs, which hold it themselves.
//
// It is put into a window as an item. Main thread only.

namespace Fenwhirl {

class FocusKeeper : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    // Where controls are looked for: what is not covered.
    Q_PROPERTY(QQuickItem* scope MEMBER m_scope NOTIFY scopeChanged FINAL)
    // The control that has the focus in the beginning, or something that contains it.
    Q_PROPERTY(QQuickItem* first MEMBER m_first NOTIFY firstChanged FINAL)

public:
    explicit FocusKeeper(QQuickItem* parent = nullptr);

    // The controls in an item at which Tab stops, in its order.
    Q_INVOKABLE [[nodiscard]] static QList<QQuickItem*> stops(QQuickItem* item);

Q_SIGNALS:
    // The focus was handed on from a control that is gone for good to one of that name.
    void handedOn(const QString& name);
    void scopeChanged();
    void firstChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void follow();
    void remember(QQuickItem* item);
    void check();
    [[nodiscard]] bool isLost() const;
    [[nodiscard]] QQuickItem* heir() const;

    QPointer<QQuickItem> m_scope;
    QPointer<QQuickItem> m_first;
    QPointer<QQuickWindow> m_window;
    QPointer<QQuickItem> m_last;
    QMetaObject::Connection m_visible;
    QMetaObject::Connection m_enabled;
    // What contained the control that had the focus last; the focus falls to one of them when it goes.
    QList<QPointer<QQuickItem>> m_around;
    // The controls as they stood then, and its place among them.
    QList<QPointer<QQuickItem>> m_chain;
    qsizetype m_place = -1;
    QTimer m_check;
};

} // namespace Fenwhirl
