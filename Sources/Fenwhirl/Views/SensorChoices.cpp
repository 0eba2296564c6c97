#include "Fenwhirl/Views/SensorChoices.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/SensorLabel.h"

namespace Fenwhirl {

void SensorChoices::setSensors(const QList<SensorState>& sensors) {
    QStringList keys;
    keys.reserve(sensors.size());
    for (const SensorState& sensor : sensors) {
        keys.append(sensor.id);
    }
    if (keys == keys_ && !names_.isEmpty()) {
        return;
    }
    keys_ = std::move(keys);
    retranslate();
}

void SensorChoices::retranslate() {
    QStringList names;
    names.reserve(keys_.size() + 1);
    names.append(localized(u"Température principale (processeur)"));
    for (const QString& key : keys_) {
        names.append(SensorLabel::name(key));
    }
    names_ = std::move(names);
    Q_EMIT changed();
}

int SensorChoices::choiceForKey(std::string_view key) const {
    if (key.empty()) {
        return 0;
    }
    const auto position = keys_.indexOf(QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())));
    return position < 0 ? -1 : static_cast<int>(position) + 1;
}

std::string SensorChoices::keyForChoice(int choice) const {
    return choice >= 1 && choice <= keys_.size() ? keys_.at(choice - 1).toStdString() : std::string();
}

} // namespace Fenwhirl
