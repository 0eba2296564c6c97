#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// Splits a text for drawing with digits of equal width: QML singleton `TabularRuns`.
//
// The interface font has digits of different widths and the toolkit gives no access to its tabular ones, so a
// changing number would make everything beside it dance. TabularText.qml draws each digit in a cell of its
// own and the text between the digits as it is; here is decided what goes into a cell. Pure; any thread.

namespace Fenwhirl {

// The text in pieces that joined give the text again: every ASCII digit is a piece of its own, whatever
// stands between two digits is one piece. A surrogate pair is never cut.
[[nodiscard]] QStringList tabularRuns(const QString& text);

class TabularRuns : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] QStringList of(const QString& text) const { return tabularRuns(text); }
};

} // namespace Fenwhirl
