#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The words around the number in a text like "Vitesse demandée : 3 060 tr/min": QML singleton `ValueWords`.
//
// A screen reader says a slider's name, then its value. Where the text that is shown has the value in it, the
// name is what stands before the number, and what follows it is the unit. A text without a number is all
// name. Pure; any thread.

namespace Fenwhirl {

struct WordsAroundValue {
    QString name;
    QString unit;

    bool operator==(const WordsAroundValue&) const = default;
};

[[nodiscard]] WordsAroundValue wordsAroundValue(const QString& text);

class ValueWords : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] QString name(const QString& text) const { return wordsAroundValue(text).name; }

    Q_INVOKABLE [[nodiscard]] QString unit(const QString& text) const { return wordsAroundValue(text).unit; }
};

} // namespace Fenwhirl
