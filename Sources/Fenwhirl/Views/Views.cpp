#include "Fenwhirl/Views/Views.h"

#include "Fenwhirl/Views/Components/Components.h"

#include <QtGlobal>

// Written by the build for the module; starts the registration of its C++ types.
void qml_register_types_Fenwhirl_Views();

void registerViews() {
    Fenwhirl::registerComponents();
    // At once: files that are loaded by their address do not import their own module, so nobody else would
    // ask.
    static const bool registered = [] {
        qml_register_types_Fenwhirl_Views();
        return true;
    }();
    Q_UNUSED(registered)
}

QUrl mainWindowFile() {
    return {QStringLiteral("qrc:/qt/qml/Fenwhirl/Views/MainWindow.qml")};
}

QUrl menuPanelFile() {
    return {QStringLiteral("qrc:/qt/qml/Fenwhirl/Views/MenuPanel.qml")};
}

QUrl alertWindowFile() {
    return {QStringLiteral("qrc:/qt/qml/Fenwhirl/Views/AlertWindow.qml")};
}
