#include "Fenwhirl/Views/Components/Components.h"

#include <QFontDatabase>
#include <QtGlobal>

// Written by the build for the module; starts the registration of all its C++ types.
void qml_register_types_Fenwhirl_Components();

namespace Fenwhirl {

void registerComponents() {
    // Taking the address is enough to keep the registration in the program; a second run would register
    // nothing new.
    void (*volatile registration)() = &qml_register_types_Fenwhirl_Components;
    Q_UNUSED(registration)
}

QFont interfaceFont(const QString& family) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (!family.isEmpty() && QFontDatabase::hasFamily(family))
        font.setFamily(family);
    font.setPixelSize(13);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

} // namespace Fenwhirl
