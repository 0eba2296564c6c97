#include "Fenwhirl/Views/Components/FocusKeeper.h"

#include <QAccessible>
#include <QQuickWindow>

#include <algorithm>

namespace Fenwhirl {

namespace {

bool isStop(const QQuickItem* item) {
    // An item that is being removed has no window any more, but otherwise looks as if it were still there.
    return item != nullptr && item->window() != nullptr && item->activeFocusOnTab() && item->isVisible() &&
           item->isEnabled();
}

// Collects tab stops. An item that is hidden or disabled contains none.
void collect(QQuickItem* item, QList<QQuickItem*>& found) {
    if (!item->isVisible() || !item->isEnabled())
        return;
    if (item->activeFocusOnTab())
        found.append(item);
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* child : children)
        collect(child, found);
}

// Appends an item and everything in it, whether visible or not.
void append(QQuickItem* item, QList<QQuickItem*>& all) {
    all.append(item);
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* child : children)
        append(child, all);
}

QList<QQuickItem*> inOrder(QQuickItem* item) {
    QList<QQuickItem*> all;
    append(item, all);
    return all;
}

// The first item from `place` on that passes the test, or else the last one before it.
template <typename Test>
QQuickItem* nearest(const QList<QQuickItem*>& items, qsizetype place, const Test& test) {
    const auto here = items.begin() + place;
    if (const auto next = std::find_if(here, items.end(), test); next != items.end())
        return *next;
    const auto before = std::find_if(std::make_reverse_iterator(here), items.rend(), test);
    return before != items.rend() ? *before : nullptr;
}

} // namespace

FocusKeeper::FocusKeeper(QQuickItem* parent) : QQuickItem(parent) {
    // With an interval of 0, the check runs in the next turn of the event loop.
    m_check.setSingleShot(true);
    connect(&m_check, &QTimer::timeout, this, &FocusKeeper::check);
}

QList<QQuickItem*> FocusKeeper::stops(QQuickItem* item) {
    QList<QQuickItem*> found;
    if (item != nullptr)
        collect(item, found);
    return found;
}

void FocusKeeper::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange) {
        if (m_window)
            m_window->disconnect(this);
        m_window = data.window;
        if (m_window) {
            connect(m_window, &QQuickWindow::activeFocusItemChanged, this, &FocusKeeper::follow);
            follow();
        }
    }
    QQuickItem::itemChange(change, data);
}

void FocusKeeper::follow() {
    QQuickItem* item = m_window ? m_window->activeFocusItem() : nullptr;
    if (isStop(item))
        remember(item);
    else
        m_check.start(); // the control that had the focus may be vanishing
}

void FocusKeeper::remember(QQuickItem* item) {
    disconnect(m_visible);
    disconnect(m_enabled);
    m_last = item;
    m_visible = connect(item, &QQuickItem::visibleChanged, this, [this] { m_check.start(); });
    m_enabled = connect(item, &QQuickItem::enabledChanged, this, [this] { m_check.start(); });
    m_around.clear();
    for (QQuickItem* around = item->parentItem(); around != nullptr; around = around->parentItem())
        m_around.append(around);
    m_chain.clear();
    const QList<QQuickItem*> chain = stops(m_window->contentItem());
    for (QQuickItem* stop : chain)
        m_chain.append(stop);
    m_place = chain.indexOf(item);
}

bool FocusKeeper::isLost() const {
    if (!m_window)
        return false;
    QQuickItem* item = m_window->activeFocusItem();
    if (item == nullptr || item == m_window->contentItem())
        return true;
    if (m_place < 0) // no control has had the focus yet
        return !isStop(item);
    if (item == m_last)
        return !isStop(item);
    // The focus is not lost while a control has it, or an item that handles its own keys. It is lost when it
    // has fallen to an ancestor of the last control.
    return !isStop(item) && !isStop(m_last) && m_around.contains(item);
}

QQuickItem* FocusKeeper::nextFocus() const {
    const QList<QQuickItem*> now = stops(m_scope);
    const auto left = [&now](const QQuickItem* candidate) { return candidate && now.contains(candidate); };
    // If the control is only hidden, an item that has appeared in its place is found as well.
    if (m_last && m_scope && m_scope->isAncestorOf(m_last)) {
        const QList<QQuickItem*> all = inOrder(m_scope);
        if (QQuickItem* near = nearest(all, all.indexOf(m_last), left))
            return near;
    } else if (m_place >= 0 && m_around.contains(m_scope)) {
        QList<QQuickItem*> before;
        for (const QPointer<QQuickItem>& stop : m_chain)
            before.append(stop);
        if (QQuickItem* near = nearest(before, m_place, left))
            return near;
    }
    const QList<QQuickItem*> first = stops(m_first);
    return !first.isEmpty() && now.contains(first.first()) ? first.first() : now.value(0);
}

void FocusKeeper::check() {
    if (!isLost())
        return;
    QQuickItem* next = nextFocus();
    if (next == nullptr)
        return;
    const bool gone = m_place >= 0 && (m_last.isNull() || m_last->window() == nullptr);
    next->forceActiveFocus(Qt::OtherFocusReason);
    const QAccessibleInterface* control = QAccessible::queryAccessibleInterface(m_window->activeFocusItem());
    if (gone && control != nullptr)
        Q_EMIT focusMoved(control->text(QAccessible::Name));
}

} // namespace Fenwhirl
