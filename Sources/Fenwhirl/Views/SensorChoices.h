// The temperatures that a fan's curve can follow, as the fan cards offer them: the main temperature first,
// then every sensor in the order of the readings.
//
// All cards share one object, because the list is the same for each. It changes only when sensors appear or
// vanish or the language changes, not with every reading. A choice is an index into `names`; the sensors'
// keys are kept inside.
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

namespace Fenwhirl {

class SensorChoices : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the machine view")
    Q_PROPERTY(QStringList names READ names NOTIFY changed)

public:
    using QObject::QObject;

    void setSensors(const QList<SensorState>& sensors);
    // Rebuilds the names in the current interface language.
    void retranslate();

    [[nodiscard]] const QStringList& names() const { return names_; }

    // The index for a stored key; -1 when no sensor of this Mac has it.
    [[nodiscard]] int choiceForKey(std::string_view key) const;
    // The key at an index; empty for the main temperature and for indices out of range.
    [[nodiscard]] std::string keyForChoice(int choice) const;

Q_SIGNALS:
    void changed();

private:
    QStringList keys_; // without the main temperature
    QStringList names_;
};

} // namespace Fenwhirl
