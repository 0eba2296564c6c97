#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

// Finding an item of a menu by typing: QML singleton `MenuSearch`, and the same as a plain function.
//
// Case and accents do not count ("equ" finds "Équilibré"). Pure; any thread.

namespace Fenwhirl {

// The item that is meant by what was typed: the nearest one from `current` on, and around the end, that
// begins with it, else the nearest one with a word that does. While only one letter has been typed, once or
// several times, the search begins behind `current`, so that the same letter again goes on to the next. -1
// when there is none; `current` may be -1.
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
