// The temperatures that a fan's curve can follow, as the fan cards offer them: the main temperature first,
// then every sensor in the order of the readings.
//
// One object for all cards: the list is the same for each, and it changes only when sensors come or go or the
// language changes, not with every reading. A choice is a position in `names`; the keys behind it stay here.
//
// Threads: main thread only.

#pragma once

#include "Fenwhirl/Monitoring/MonitorStates.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <string>
#include <string_view>

class SensorChoices : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the machine view")
    Q_PROPERTY(QStringList names READ names NOTIFY changed)

public:
    using QObject::QObject;

    void setSensors(const QList<SensorState>& sensors);
    // The names again, in the language of now.
    void retranslate();

    [[nodiscard]] const QStringList& names() const { return names_; }

    // The position of a stored key; -1 when no sensor of this Mac has it.
    [[nodiscard]] int choiceForKey(std::string_view key) const;
    // The key of a position; empty for the main temperature and for positions out of range.
    [[nodiscard]] std::string keyForChoice(int choice) const;

Q_SIGNALS:
    void changed();

private:
    QStringList keys_; // without the main temperature
    QStringList names_;
};
