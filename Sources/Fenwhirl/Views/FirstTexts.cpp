#include "Fenwhirl/Views/FirstTexts.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Views/PageLabels.h"

#include <QGuiApplication>
#include <QTextLayout>

#include <cmath>

namespace Fenwhirl {

void prepareFirstTexts(double textScale) {
    for (const FirstTextStyle& style : firstTextStyles) {
        QFont font = QGuiApplication::font();
        font.setPixelSize(static_cast<int>(std::round(style.pixelSize * textScale)));
        font.setWeight(style.weight);
        QTextLayout layout(title(Page::dashboard), font);
        layout.beginLayout();
        static_cast<void>(layout.createLine());
        layout.endLayout();
    }
}

} // namespace Fenwhirl
