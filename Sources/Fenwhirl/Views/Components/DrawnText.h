#pragma once

#include "Fenwhirl/Localization/DrawnText.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// Converts a text to the form in which it is drawn, with no-break spaces and typographic apostrophes: QML
// singleton `DrawnText`.
//
// Use the result for drawing, and the original text for Accessible.name.

namespace Fenwhirl {

class DrawnText : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] QString of(const QString& text) const { return drawnText(text); }
};

} // namespace Fenwhirl
