// Runs the Qt Quick tests of this folder against the compiled-in module.

#include "Fenwhirl/Views/Components/Components.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleValueInterface>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QtQuickTest>

#include <memory>

namespace {

// What assistive technology sees of an item and does to it, for the tests in QML: context property
// `accessibility`.
class AccessibilityProbe : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE [[nodiscard]] int role(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        return interface != nullptr ? interface->role() : 0;
    }

    Q_INVOKABLE [[nodiscard]] QString name(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        return interface != nullptr ? interface->text(QAccessible::Name) : QString();
    }

    Q_INVOKABLE [[nodiscard]] bool checked(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        return interface != nullptr && interface->state().checked;
    }

    Q_INVOKABLE [[nodiscard]] QVariant value(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        auto* values = interface != nullptr ? interface->valueInterface() : nullptr;
        return values != nullptr ? values->currentValue() : QVariant();
    }

    Q_INVOKABLE [[nodiscard]] QVariantList range(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        auto* values = interface != nullptr ? interface->valueInterface() : nullptr;
        return values != nullptr ? QVariantList{values->minimumValue(), values->maximumValue()}
                                 : QVariantList();
    }

    Q_INVOKABLE bool setValue(QObject* item, double value) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        auto* values = interface != nullptr ? interface->valueInterface() : nullptr;
        if (values == nullptr)
            return false;
        values->setCurrentValue(value);
        return true;
    }

    Q_INVOKABLE bool act(QObject* item, const QString& action) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        auto* actions = interface != nullptr ? interface->actionInterface() : nullptr;
        if (actions == nullptr || !actions->actionNames().contains(action))
            return false;
        actions->doAction(action);
        return true;
    }

    // The first visible item in the subtree that is a node with this role.
    Q_INVOKABLE [[nodiscard]] QObject* find(QQuickItem* root, int role) const {
        if (!root->isVisible())
            return nullptr;
        auto* interface = QAccessible::queryAccessibleInterface(root);
        if (interface != nullptr && interface->role() == role)
            return root;
        for (QQuickItem* child : root->childItems()) {
            if (QObject* found = find(child, role))
                return found;
        }
        return nullptr;
    }
};

class Setup : public QObject {
    Q_OBJECT

public Q_SLOTS:

    void applicationAvailable() {
        Fenwhirl::registerComponents();
        QGuiApplication::setFont(Fenwhirl::interfaceFont(QStringLiteral("Inter")));
        QAccessible::setActive(true);
    }

    void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine->rootContext()->setContextProperty(QStringLiteral("accessibility"), &m_probe);
    }

private:
    AccessibilityProbe m_probe;
};

} // namespace

QUICK_TEST_MAIN_WITH_SETUP(Components, Setup)

#include "ComponentTests.moc"
