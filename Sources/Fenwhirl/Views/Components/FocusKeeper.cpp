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

// The tab stop that an item is, or belongs to, like a row of a list; nullptr if it belongs to none.
QQuickItem* stopOf(QQuickItem* item) {
    while (item != nullptr && !isStop(item)) {
        item = item->parentItem();
    }
    return item;
}

// Collects tab stops. An item that is hidden or disabled contains none.
void collect(QQuickItem* item, QList<QQuickItem*>& found) {
    if (!item->isVisible() || !item->isEnabled()) {
        return;
    }
    if (item->activeFocusOnTab()) {
        found.append(item);
    }
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* child : children) {
        collect(child, found);
    }
}

// Appends an item and everything in it, whether visible or not.
void append(QQuickItem* item, QList<QQuickItem*>& all) {
    all.append(item);
    const QList<QQuickItem*> children = item->childItems();
    for (QQuickItem* child : children) {
        append(child, all);
    }
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
    if (const auto next = std::find_if(here, items.end(), test); next != items.end()) {
        return *next;
    }
    const auto before = std::find_if(std::make_reverse_iterator(here), items.rend(), test);
    return before != items.rend() ? *before : nullptr;
}

} // namespace

FocusKeeper::FocusKeeper(QQuickItem* parent) : QQuickItem(parent) {
    // With an interval of 0, the check runs in the next turn of the event loop.
    check_.setSingleShot(true);
    connect(&check_, &QTimer::timeout, this, &FocusKeeper::check);
}

QList<QQuickItem*> FocusKeeper::stops(QQuickItem* item) {
    QList<QQuickItem*> found;
    if (item != nullptr) {
        collect(item, found);
    }
    return found;
}

void FocusKeeper::reportActive() {
    if (!window_ || !window_->isActive() || !QAccessible::isActive()) {
        return;
    }
    QAccessible::State changed;
    changed.active = true;
    QAccessibleStateChangeEvent event(window_, changed);
    QAccessible::updateAccessibility(&event);
}

void FocusKeeper::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange) {
        if (window_) {
            window_->disconnect(this);
        }
        window_ = data.window;
        if (window_) {
            connect(window_, &QQuickWindow::activeFocusItemChanged, this, &FocusKeeper::follow);
            follow();
        }
    }
    QQuickItem::itemChange(change, data);
}

void FocusKeeper::follow() {
    QQuickItem* stop = window_ ? stopOf(window_->activeFocusItem()) : nullptr;
    if (stop != nullptr) {
        remember(stop);
    } else {
        check_.start(); // the control that had the focus may be vanishing
    }
}

void FocusKeeper::remember(QQuickItem* item) {
    disconnect(visible_);
    disconnect(enabled_);
    last_ = item;
    visible_ = connect(item, &QQuickItem::visibleChanged, this, [this] { check_.start(); });
    enabled_ = connect(item, &QQuickItem::enabledChanged, this, [this] { check_.start(); });
    around_.clear();
    for (QQuickItem* around = item->parentItem(); around != nullptr; around = around->parentItem()) {
        around_.append(around);
    }
    chain_.clear();
    const QList<QQuickItem*> chain = stops(window_->contentItem());
    for (QQuickItem* stop : chain) {
        chain_.append(stop);
    }
    place_ = chain.indexOf(item);
}

bool FocusKeeper::isLost() const {
    if (!window_) {
        return false;
    }
    QQuickItem* item = window_->activeFocusItem();
    if (item == nullptr || item == window_->contentItem()) {
        return true;
    }
    if (stopOf(item) != nullptr) {
        return false;
    }
    if (place_ < 0 || item == last_) { // no control has had the focus yet, or it cannot be used any more
        return true;
    }
    // The focus is not lost while an item has it that handles its own keys. It is lost when it has fallen to
    // an ancestor of the last control.
    return !isStop(last_) && around_.contains(item);
}

QQuickItem* FocusKeeper::nextFocus() const {
    const QList<QQuickItem*> now = stops(scope_);
    const auto left = [&now](const QQuickItem* candidate) { return candidate && now.contains(candidate); };
    // If the control is only hidden, an item that has appeared in its place is found as well.
    if (last_ && scope_ && scope_->isAncestorOf(last_)) {
        const QList<QQuickItem*> all = inOrder(scope_);
        if (QQuickItem* near = nearest(all, all.indexOf(last_), left)) {
            return near;
        }
    } else if (place_ >= 0 && around_.contains(scope_)) {
        QList<QQuickItem*> before;
        for (const QPointer<QQuickItem>& stop : chain_) {
            before.append(stop);
        }
        if (QQuickItem* near = nearest(before, place_, left)) {
            return near;
        }
    }
    const QList<QQuickItem*> first = stops(first_);
    return !first.isEmpty() && now.contains(first.first()) ? first.first() : now.value(0);
}

void FocusKeeper::check() {
    if (!isLost()) {
        return;
    }
    QQuickItem* next = nextFocus();
    if (next == nullptr) {
        return;
    }
    const bool gone = place_ >= 0 && (last_.isNull() || last_->window() == nullptr);
    next->forceActiveFocus(Qt::OtherFocusReason);
    const QAccessibleInterface* control = QAccessible::queryAccessibleInterface(window_->activeFocusItem());
    if (gone && control != nullptr) {
        Q_EMIT focusMoved(control->text(QAccessible::Name));
    }
}

} // namespace Fenwhirl
