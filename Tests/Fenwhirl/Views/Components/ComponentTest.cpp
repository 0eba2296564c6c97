// Runs the Qt Quick tests of this folder against the compiled module.

#include "Fenwhirl/Views/Components/Components.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleTextInterface>
#include <QAccessibleValueInterface>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlError>
#include <QQuickItem>
#include <QtQuickTest>

#include <cstdio>

namespace Fenwhirl {

namespace {

// Lets the QML tests see and operate an item as assistive technology does. Available to them as the context
// property `accessibility`.
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
        return values != nullptr ? values->currentValue().toDouble() : QVariant();
    }

    // The value as a text: of a slider as VoiceOver reads it, of a stepper or combo box as Orca does.
    Q_INVOKABLE [[nodiscard]] QString valueText(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        auto* words = interface != nullptr ? interface->textInterface() : nullptr;
        auto* values = interface != nullptr ? interface->valueInterface() : nullptr;
        if (words != nullptr) {
            return words->text(0, words->characterCount());
        }
        return values != nullptr ? values->currentValue().toString() : QString();
    }

    Q_INVOKABLE [[nodiscard]] QString description(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        return interface != nullptr ? interface->text(QAccessible::Description) : QString();
    }

    Q_INVOKABLE [[nodiscard]] bool modal(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        return interface != nullptr && interface->state().modal;
    }

    // The names of what is in an item, and the name of what is around it.
    Q_INVOKABLE [[nodiscard]] QStringList children(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        QStringList names;
        for (int i = 0; interface != nullptr && i < interface->childCount(); ++i) {
            names.append(interface->child(i)->text(QAccessible::Name));
        }
        return names;
    }

    Q_INVOKABLE [[nodiscard]] QString nameAround(QObject* item) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        auto* around = interface != nullptr ? interface->parent() : nullptr;
        return around != nullptr ? around->text(QAccessible::Name) : QString();
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
        if (values == nullptr) {
            return false;
        }
        values->setCurrentValue(value);
        return true;
    }

    Q_INVOKABLE bool act(QObject* item, const QString& action) const {
        auto* interface = QAccessible::queryAccessibleInterface(item);
        auto* actions = interface != nullptr ? interface->actionInterface() : nullptr;
        if (actions == nullptr || !actions->actionNames().contains(action)) {
            return false;
        }
        actions->doAction(action);
        return true;
    }

    // The first visible item in the subtree that has this accessible role.
    Q_INVOKABLE [[nodiscard]] QObject* find(QQuickItem* root, int role) const {
        if (!root->isVisible()) {
            return nullptr;
        }
        auto* interface = QAccessible::queryAccessibleInterface(root);
        if (interface != nullptr && interface->role() == role) {
            return root;
        }
        for (QQuickItem* child : root->childItems()) {
            if (QObject* found = find(child, role)) {
                return found;
            }
        }
        return nullptr;
    }
};

class Setup : public QObject {
    Q_OBJECT

public Q_SLOTS:

    void applicationAvailable() {
        registerComponents();
        QGuiApplication::setFont(interfaceFont(QStringLiteral("Inter")));
        QAccessible::setActive(true);
    }

    void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine->rootContext()->setContextProperty(QStringLiteral("accessibility"), &probe_);
        connect(engine, &QQmlEngine::warnings, this, [this](const QList<QQmlError>& warnings) {
            for (const QQmlError& warning : warnings) {
                // One test asks for a symbol that does not exist and checks this warning itself.
                if (!warning.description().contains(
                        QStringLiteral("no drawing for the symbol \"umbrella\""))) {
                    warnings_.append(warning.toString());
                }
            }
        });
    }

public:
    // Warnings of the QML engine; each of them is a failure.
    [[nodiscard]] const QStringList& warnings() const { return warnings_; }

private:
    AccessibilityProbe probe_;
    QStringList warnings_;
};

} // namespace

} // namespace Fenwhirl

int main(int argc, char** argv) {
    Fenwhirl::Setup setup;
    const int failures = quick_test_main_with_setup(argc, argv, "Components", nullptr, &setup);
    for (const QString& warning : setup.warnings()) {
        std::fprintf(stderr, "FAIL!  : a warning of the QML engine: %s\n", qUtf8Printable(warning));
    }
    return failures != 0 || setup.warnings().isEmpty() ? failures : 1;
}

#include "ComponentTest.moc"
