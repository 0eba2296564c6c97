#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The words around the number in a text like "Vitesse demandée : 3 060 tr/min": QML singleton `ValueLabelParts`.
//
// A screen reader says a slider's name, then its value. If the displayed text contains the value, the name is
// the part before the number, the value the rest, and the unit the part after the number. A text without a number is entirely
// the name. Pure; any thread.

namespace Fenwhirl {

struct WordsAroundValue {
    QString name;
    QString value; // with its unit
    QString unit;

    bool operator==(const WordsAroundValue&) const = default;
};

[[nodiscard]] WordsAroundValue wordsAroundValue(const QString& text);

class ValueLabelParts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] QString name(const QString& text) const { return wordsAroundValue(text).name; }

    Q_INVOKABLE [[nodiscard]] QString value(const QString& text) const {
        return wordsAroundValue(text).value;
    }

    Q_INVOKABLE [[nodiscard]] QString unit(const QString& text) const { return wordsAroundValue(text).unit; }
};

} // namespace Fenwhirl
