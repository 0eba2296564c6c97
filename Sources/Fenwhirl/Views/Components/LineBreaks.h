#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// Where a line must not end, for drawing texts of several lines: QML singleton `LineBreaks`.
//
// The texts of the interface have ordinary blanks everywhere, because that is how they are written, looked up
// and compared. Drawn with those, "92 °C" may end one line and begin the next, and so may a French colon.
// Here they become blanks at which no line ends; nothing else changes, so the text stays as long as it was.
// Pure; any thread.

namespace Fenwhirl {

// No-break spaces in place of single blanks before "°", "%", ":", ";", "?", "!", "»", "…" and dashes, and
// after "«".
[[nodiscard]] QString keptTogether(const QString& text);

class LineBreaks : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] QString keptTogether(const QString& text) const {
        return Fenwhirl::keptTogether(text);
    }
};

} // namespace Fenwhirl
