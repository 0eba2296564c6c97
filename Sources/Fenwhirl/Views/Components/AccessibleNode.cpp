#include "Fenwhirl/Views/Components/AccessibleNode.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleObject>
#include <QAccessibleTextInterface>
#include <QAccessibleValueInterface>
#include <QGuiApplication>
#include <QMetaType>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace Fenwhirl {

namespace {

// The value of a control: a number where a number is asked for, and the displayed text where a text is.
struct Reading {
    double number = 0.0;
    QString text;
};

bool isCocoa() {
    return QGuiApplication::platformName() == QLatin1String("cocoa");
}

// The attached object with an item's Accessible properties, or nullptr. Not looked up as a property: that would create
// another one while Qt creates the first, when it already announces the item.
QObject* accessibleProperties(const QQuickItem* item) {
    const QObjectList& children = item->children();
    const auto found = std::find_if(children.begin(), children.end(), [](const QObject* child) {
        return child->inherits("QQuickAccessibleAttached");
    });
    return found != children.end() ? *found : nullptr;
}

// Whether assistive technology does not see the item.
bool isIgnored(const QQuickItem* item) {
    const QObject* accessible = accessibleProperties(item);
    return accessible == nullptr || accessible->property("ignored").toBool();
}

// An item's interface, or nullptr if the item is ignored. Qt keeps the interface of one that is ignored only later.
QAccessibleInterface* visibleNode(QQuickItem* item) {
    return isIgnored(item) ? nullptr : QAccessible::queryAccessibleInterface(item);
}

// Whether this is the item of a Popup, which has the role of a dialog. All of ours are modal.
bool isPopup(const QObject* item) {
    return item->inherits("QQuickPopupItem");
}

// Appends the accessible items nearest to `item` in its subtree.
void appendChildren(const QQuickItem* item, QList<QAccessibleInterface*>& found) {
    const QList<QQuickItem*> items = item->childItems();
    for (QQuickItem* child : items) {
        if (QAccessibleInterface* node = visibleNode(child)) {
            found.append(node);
        } else {
            appendChildren(child, found);
        }
    }
}

class AccessibleNode final : public QAccessibleObject,
                             public QAccessibleActionInterface,
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
                             public QAccessibleAttributesInterface,
#endif
                             public QAccessibleTextInterface,
                             public QAccessibleValueInterface {
public:
    // The attached object with the Accessible properties.
    AccessibleNode(QQuickItem* item, QObject* accessible)
        : QAccessibleObject(item)
        , item_(item)
        , accessible_(accessible) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        const bool isRange = role() == QAccessible::Slider || role() == QAccessible::SpinBox;
        const bool isChoice = role() == QAccessible::ComboBox;
        switch (type) {
        case QAccessible::ActionInterface:
            return static_cast<QAccessibleActionInterface*>(this);
        case QAccessible::ValueInterface:
            // VoiceOver reads only values; in the tree of AT-SPI they are always numbers.
            return isRange || (isChoice && isCocoa()) ? static_cast<QAccessibleValueInterface*>(this)
                                                      : nullptr;
        case QAccessible::TextInterface:
            return role() == QAccessible::SpinBox || isChoice ? static_cast<QAccessibleTextInterface*>(this)
                                                              : nullptr;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
        case QAccessible::AttributesInterface:
            return static_cast<QAccessibleAttributesInterface*>(this);
#endif
        default:
            return QAccessibleObject::interface_cast(type);
        }
    }

    // --- The tree ---

    [[nodiscard]] QWindow* window() const override {
        return item_->window();
    }

    [[nodiscard]] QAccessibleInterface* parent() const override {
        for (QQuickItem* around = item_->parentItem(); around != nullptr; around = around->parentItem()) {
            if (QAccessibleInterface* node = visibleNode(around)) {
                return node;
            }
        }
        return QAccessible::queryAccessibleInterface(window());
    }

    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        return children().value(index);
    }

    [[nodiscard]] int childCount() const override {
        return static_cast<int>(children().size());
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(children().indexOf(child));
    }

    // --- What it is ---

    [[nodiscard]] QAccessible::Role role() const override {
        return isPopup(item_) ? QAccessible::Dialog
                              : static_cast<QAccessible::Role>(accessible_->property("role").toInt());
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        switch (kind) {
        case QAccessible::Name:
            return accessible_->property("name").toString();
        case QAccessible::Description:
            return accessible_->property("description").toString();
        case QAccessible::Value:
            return item_->property("accessibleText").toString();
        default:
            return {};
        }
    }

    [[nodiscard]] QRect rect() const override {
        if (window() == nullptr) {
            return {};
        }
        const QPoint corner = window()->mapToGlobal(item_->mapToScene(QPointF()).toPoint());
        return {corner, item_->size().toSize()};
    }

    [[nodiscard]] QAccessible::State state() const override {
        const QWindow* around = window();
        QAccessible::State state;
        state.invisible = around == nullptr || !around->isVisible() || !item_->isVisible();
        state.offscreen = around == nullptr || !around->geometry().intersects(rect());
        state.disabled = !item_->isEnabled();
        state.focusable = accessible_->property("focusable").toBool() || item_->activeFocusOnTab();
        state.focused = item_->hasActiveFocus();
        state.modal = isPopup(item_) || item_->property("accessibleModal").toBool();
        return state;
    }

    // --- What can be done with it ---

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names;
        if (role() == QAccessible::Slider || role() == QAccessible::SpinBox) {
            names = {increaseAction(), decreaseAction()};
        } else if (role() == QAccessible::ComboBox) {
            names = {pressAction()};
        }
        if (state().focusable) {
            names.append(setFocusAction());
        }
        return names;
    }

    void doAction(const QString& name) override {
        if (name == setFocusAction()) {
            item_->forceActiveFocus();
        } else if (actionNames().contains(name)) {
            // Emits the signal of the attached object: "Press" is pressAction().
            QMetaObject::invokeMethod(accessible_,
                                      (name.toLower() + QLatin1String("Action")).toLatin1().constData());
        }
    }

    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override {
        return {};
    }

    // --- Its value ---

    [[nodiscard]] QVariant currentValue() const override {
        return QVariant::fromValue(Reading{item_->property("value").toDouble(), text(QAccessible::Value)});
    }

    void setCurrentValue(const QVariant& value) override {
        item_->setProperty("value", value);
    }

    [[nodiscard]] QVariant maximumValue() const override {
        return item_->property("maximumValue");
    }

    [[nodiscard]] QVariant minimumValue() const override {
        return item_->property("minimumValue");
    }

    [[nodiscard]] QVariant minimumStepSize() const override {
        return item_->property("stepSize");
    }

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    [[nodiscard]] QList<QAccessible::Attribute> attributeKeys() const override {
        return {QAccessible::Attribute::Custom};
    }

    [[nodiscard]] QVariant attributeValue(QAccessible::Attribute key) const override {
        if (key != QAccessible::Attribute::Custom) {
            return {};
        }
        return QVariant::fromValue(QHash<QString, QString>{
            { QStringLiteral("valuetext"),
              text(QAccessible::Value) }});
    }
#endif

    // --- Its text, which cannot be selected or edited ---

    [[nodiscard]] QString text(int start, int end) const override {
        return text(QAccessible::Value).mid(start, end - start);
    }

    [[nodiscard]] int characterCount() const override {
        return static_cast<int>(text(QAccessible::Value).size());
    }

    void selection(int /*index*/, int* start, int* end) const override {
        *start = *end = 0;
    }

    [[nodiscard]] int selectionCount() const override {
        return 0;
    }

    void addSelection(int /*start*/, int /*end*/) override {}

    void removeSelection(int /*index*/) override {}

    void setSelection(int /*index*/, int /*start*/, int /*end*/) override {}

    [[nodiscard]] int cursorPosition() const override {
        return 0;
    }

    void setCursorPosition(int /*position*/) override {}

    [[nodiscard]] QRect characterRect(int /*offset*/) const override {
        return rect();
    }

    [[nodiscard]] int offsetAtPoint(const QPoint& /*point*/) const override {
        return 0;
    }

    void scrollToSubstring(int /*start*/, int /*end*/) override {}

    [[nodiscard]] QString attributes(int /*offset*/, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

private:
    [[nodiscard]] QList<QAccessibleInterface*> children() const {
        QList<QAccessibleInterface*> nodes;
        if (actionNames().isEmpty() && !isCovered()) {
            appendChildren(item_, nodes);
        }
        return nodes;
    }

    // Whether a dialog covers it. A question counts as long as it has the focus: no longer than that, because
    // screen readers look around the control that gets the focus back.
    [[nodiscard]] bool isCovered() const {
        const QVariant covered = item_->property("accessibleCovered");
        if (!covered.isValid() || covered.toBool() || item_->window() == nullptr) {
            return covered.toBool();
        }
        const QQuickItem* focused = item_->window()->activeFocusItem();
        while (focused != nullptr && !isPopup(focused)) {
            focused = focused->parentItem();
        }
        return focused != nullptr && !isIgnored(focused);
    }

    QQuickItem* item_;
    QObject* accessible_;
};

// A window that is a dialog. Its own interface is the dialog: screen readers that find one inside the window's take the
// inner one for the window that is active, and lose it when the outer one is reported to be.
class DialogWindowNode final : public QAccessibleObject {
public:
    explicit DialogWindowNode(QQuickWindow* window) : QAccessibleObject(window), window_(window) {}

    [[nodiscard]] QWindow* window() const override { return window_; }

    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(qApp);
    }

    [[nodiscard]] QAccessibleInterface* child(int index) const override { return children().value(index); }

    [[nodiscard]] int childCount() const override { return static_cast<int>(children().size()); }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(children().indexOf(child));
    }

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Dialog; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        switch (kind) {
        case QAccessible::Name:
            return window_->property("accessibleName").toString();
        case QAccessible::Description:
            return window_->property("accessibleMessage").toString();
        default:
            return {};
        }
    }

    [[nodiscard]] QRect rect() const override { return window_->geometry(); }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.active = window_->isActive();
        state.invisible = !window_->isVisible();
        state.modal = window_->modality() != Qt::NonModal;
        return state;
    }

private:
    [[nodiscard]] QList<QAccessibleInterface*> children() const {
        QList<QAccessibleInterface*> nodes;
        appendChildren(window_->contentItem(), nodes);
        return nodes;
    }

    QQuickWindow* window_;
};

QAccessibleInterface* makeNode(const QString& /*className*/, QObject* object) {
    if (auto* window = qobject_cast<QQuickWindow*>(object); window != nullptr) {
        // On macOS a window is an element of the system's own.
        const bool isDialog = !isCocoa() && window->metaObject()->indexOfProperty("accessibleMessage") >= 0;
        return isDialog ? new DialogWindowNode(window) : nullptr;
    }
    auto* item = qobject_cast<QQuickItem*>(object);
    if (item == nullptr) {
        return nullptr;
    }
    const QMetaObject* type = item->metaObject();
    if (!isPopup(item) && type->indexOfProperty("accessibleText") < 0 &&
        type->indexOfProperty("accessibleModal") < 0 && type->indexOfProperty("accessibleCovered") < 0) {
        return nullptr;
    }
    QObject* accessible = accessibleProperties(item);
    return accessible != nullptr ? new AccessibleNode(item, accessible) : nullptr;
}

} // namespace

void installAccessibleNodes() {
    if (QMetaType::hasRegisteredConverterFunction<Reading, double>()) {
        return; // it was called before
    }
    QMetaType::registerConverter<Reading, double>([](const Reading& reading) { return reading.number; });
    QMetaType::registerConverter<Reading, QString>([](const Reading& reading) { return reading.text; });
    QAccessible::installFactory(makeNode);
}

bool isSliderTextHeard() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    return true;
#else
    return isCocoa();
#endif
}

} // namespace Fenwhirl
