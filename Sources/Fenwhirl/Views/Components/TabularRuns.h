#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// Splits a text for drawing with digits of equal width: QML singleton `TabularRuns`.
//
// The digits of the interface font have different widths, and Qt 6.4 gives no access to its tabular digits,
// so a changing number would move everything beside it. TabularText.qml draws each digit in a cell of its own
// and the text between the digits unchanged. This class decides what goes into a cell. Pure; any thread.

namespace Fenwhirl {

// The text in pieces that give the text when joined: every ASCII digit is a piece of its own, and whatever is
// between two digits is one piece. A surrogate pair is never split.
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
