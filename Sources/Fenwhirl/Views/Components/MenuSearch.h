#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// Finds an item of a menu by typing: QML singleton `MenuSearch`, also available as a plain function.
//
// Case and accents are ignored ("equ" finds "Équilibré"). Pure; any thread.

namespace Fenwhirl {

// The item that matches what was typed: the nearest one from `current` on, wrapping around at the end, that
// begins with it, or else the nearest one with a word that does. While only one character has been typed,
// once or several times, the search begins after `current`, so that typing the character again moves on to
// the next match. Returns -1 if there is none; `current` may be -1.
[[nodiscard]] int foundInMenu(const QStringList& labels, const QString& typed, int current);

class MenuSearch : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE [[nodiscard]] int find(const QStringList& labels, const QString& typed, int current) const {
        return foundInMenu(labels, typed, current);
    }
};

} // namespace Fenwhirl
