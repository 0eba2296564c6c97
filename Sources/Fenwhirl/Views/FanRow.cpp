#include "Fenwhirl/Views/FanRow.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"
#include "Fenwhirl/Views/SensorChoices.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

QString requestText(double rpm) {
    return localized(u"Vitesse demandée : %@ tr/min", {NumberFormat::rpmText(rpm)});
}

QString maximumText(double celsius) {
    return localized(u"Vitesse maximale à %@ °C", {NumberFormat::degreesText(celsius)});
}

} // namespace

FanRow::FanRow(Monitor& monitor, const SensorChoices& choices, const FanState& fan, QObject* parent)
    : QObject(parent)
    , monitor_(monitor)
    , choices_(choices)
    , fan_(fan)
    , setting_(monitor.setting(fan.id)) {
    surroundings_ = surroundings();
    retranslate();
}

void FanRow::setFan(const FanState& fan) {
    const FanState previous = std::exchange(fan_, fan);
    if (fan.minRPM != previous.minRPM || fan.maxRPM != previous.maxRPM) {
        rangeText_ = localized(u"%@ – %@ tr/min",
                               {NumberFormat::rpmText(fan.minRPM), NumberFormat::rpmText(fan.maxRPM)});
        Q_EMIT rangeChanged();
        Q_EMIT speedChanged(); // the gauge shows the speed as a fraction of the range
    }
    if (fan.requestedRPM != previous.requestedRPM || fan.minRPM != previous.minRPM ||
        fan.maxRPM != previous.maxRPM) {
        Q_EMIT requestChanged();
    }
    if (fan.rpm != previous.rpm) {
        speedText_ = NumberFormat::rpmText(fan.rpm);
        Q_EMIT speedChanged();
        if (setting_.mode != FanModeKind::constant) {
            Q_EMIT panelRPMChanged();
        }
    }
}

void FanRow::refreshSetting() {
    setting_ = monitor_.setting(fan_.id);
    refreshSurroundings();
    Q_EMIT settingChanged();
    Q_EMIT panelRPMChanged();
}

FanRow::Surroundings FanRow::surroundings() const {
    Surroundings now;
    if (setting_.mode != FanModeKind::sensor) {
        return now;
    }
    now.followsMainTemperature =
        choices_.choiceForKey(setting_.sensorKey) <= 0; // or a sensor that no longer exists
    now.isProtecting = monitor_.isProtecting();
    if (now.followsMainTemperature) {
        now.celsius = monitor_.primaryCelsius();
        if (monitor_.alertsEnabled()) {
            now.alertAt = monitor_.alertThreshold();
        }
        return now;
    }
    const QString key = QString::fromStdString(setting_.sensorKey);
    for (const SensorState& sensor : monitor_.sensors()) {
        if (sensor.id == key) {
            now.celsius = sensor.celsius;
        }
    }
    return now;
}

void FanRow::refreshSurroundings() {
    const Surroundings now = surroundings();
    if (std::exchange(surroundings_, now) != now) {
        Q_EMIT surroundingsChanged();
    }
}

QString FanRow::lowestText() const {
    return NumberFormat::rpmText(fan_.minRPM);
}

QString FanRow::highestText() const {
    return NumberFormat::rpmText(fan_.maxRPM);
}

double FanRow::drivingTemperature() const {
    return surroundings_.celsius.value_or(noNumber);
}

double FanRow::alertAt() const {
    return surroundings_.alertAt.value_or(noNumber);
}

void FanRow::retranslate() {
    name_ = monitor_.fanName(fan_);
    rangeText_ = localized(u"%@ – %@ tr/min",
                           {NumberFormat::rpmText(fan_.minRPM), NumberFormat::rpmText(fan_.maxRPM)});
    speedText_ = NumberFormat::rpmText(fan_.rpm);
    Q_EMIT nameChanged();
    Q_EMIT rangeChanged();
    Q_EMIT speedChanged();
    Q_EMIT requestChanged();
    Q_EMIT settingChanged();
}

QString FanRow::summary() const {
    const auto mode = [this] {
        switch (setting_.mode) {
        case FanModeKind::automatic:
            return localized(u"Auto");
        case FanModeKind::constant:
            return localized(u"Vitesse fixe");
        case FanModeKind::sensor:
            return localized(u"Selon un capteur");
        }
        Q_UNREACHABLE();
    };
    return name_ + u' ' + speedText_ + u' ' + localized(u"tr/min") + QStringLiteral(", ") + mode();
}

double FanRow::fractionOf(double rpm) const {
    // Avoids a division by zero for a fan that reports no range at all.
    const double span = std::max(fan_.maxRPM - fan_.minRPM, 1.0);
    const double fraction = (rpm - fan_.minRPM) / span;
    return std::isfinite(fraction) ? fraction : 0;
}

double FanRow::speedFraction() const {
    return fractionOf(fan_.rpm);
}

double FanRow::requestedFraction() const {
    return fan_.requestedRPM ? fractionOf(*fan_.requestedRPM) : noNumber;
}

QString FanRow::requestedText() const {
    return fan_.requestedRPM ? requestText(*fan_.requestedRPM) : QString();
}

double FanRow::lowestRPM() const {
    return std::isfinite(fan_.minRPM) ? fan_.minRPM : 0;
}

double FanRow::highestRPM() const {
    const double lowest = lowestRPM();
    return std::isfinite(fan_.maxRPM) ? std::max(fan_.maxRPM, lowest + 1) : lowest + 1;
}

void FanRow::writeSetting(const FanSetting& setting) {
    monitor_.setSetting(fan_.id, setting);
    refreshSetting();
}

void FanRow::setMode(int mode) {
    if (mode < 0 || mode >= static_cast<int>(allFanModeKinds.size())) {
        return;
    }
    FanSetting setting = setting_;
    setting.mode = allFanModeKinds.at(static_cast<std::size_t>(mode));
    writeSetting(setting);
}

void FanRow::setConstantRPM(double rpm) {
    FanSetting setting = setting_;
    setting.constantRPM = rpm;
    writeSetting(setting);
}

QString FanRow::constantText() const {
    return requestText(setting_.constantRPM);
}

QString FanRow::constantSpeedText() const {
    return NumberFormat::rpmText(setting_.constantRPM);
}

QString FanRow::panelSpeedText() const {
    return NumberFormat::rpmText(panelRPM());
}

double FanRow::panelRPM() const {
    const double rpm = setting_.mode == FanModeKind::constant ? setting_.constantRPM : fan_.rpm;
    // Texts show a non-finite speed as 0. A slider cannot show it, so it gets the lower end of its range.
    return std::isfinite(rpm) ? rpm : lowestRPM();
}

void FanRow::setPanelRPM(double rpm) {
    FanSetting setting = setting_;
    setting.mode = FanModeKind::constant;
    setting.constantRPM = rpm;
    writeSetting(setting);
}

int FanRow::sensorChoice() const {
    return choices_.choiceForKey(setting_.sensorKey);
}

void FanRow::setSensorChoice(int choice) {
    if (choice < 0 || choice >= choices_.names().size()) {
        return;
    }
    FanSetting setting = setting_;
    setting.sensorKey = choices_.keyForChoice(choice);
    writeSetting(setting);
}

void FanRow::setStartTemp(double celsius) {
    FanSetting setting = setting_;
    setting.startTemp = celsius;
    writeSetting(setting);
}

QString FanRow::startText() const {
    return localized(u"La vitesse augmente à partir de %@ °C",
                     {NumberFormat::degreesText(setting_.startTemp)});
}

void FanRow::setMaxTemp(double celsius) {
    FanSetting setting = setting_;
    setting.maxTemp = celsius;
    writeSetting(setting);
}

QString FanRow::maxText() const {
    return maximumText(setting_.maxTemp);
}

QString FanRow::widestMaxText() const {
    constexpr double highest = 100;
    return maximumText(highest);
}

} // namespace Fenwhirl
