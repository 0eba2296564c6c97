#include "Fenwhirl/Views/MachineView.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace Fenwhirl {

namespace {

constexpr qsizetype panelSensorCount = 3;

} // namespace

MachineView::MachineView(Monitor& monitor, QString computerName, QObject* parent)
    : LiveView(parent)
    , monitor_(monitor)
    , computerName_(std::move(computerName))
    , fans_(monitor, sensorChoices_, this) {
    // A fan's choice is an index into the list that has changed.
    connect(&sensorChoices_, &SensorChoices::changed, this, [this] { fans_.refreshSettings(); });
}

void MachineView::connectModels() {
    connect(&monitor_, &Monitor::fansChanged, this, [this] { fans_.setFans(monitor_.fans()); });
    connect(&monitor_, &Monitor::settingsChanged, this, [this] { fans_.refreshSettings(); });
    connect(&monitor_, &Monitor::sensorsChanged, this, &MachineView::refreshSensors);
    connect(&monitor_, &Monitor::primaryCelsiusChanged, this, &MachineView::refreshTemperature);
    connect(&monitor_, &Monitor::primaryCelsiusChanged, this, &MachineView::refreshStatus);
    connect(&monitor_, &Monitor::warmThresholdChanged, this, &MachineView::refreshStatus);
    connect(&monitor_, &Monitor::hotThresholdChanged, this, &MachineView::refreshStatus);
    connect(&monitor_, &Monitor::historyChanged, this, &MachineView::historyChanged);
    for (const auto signal : {&Monitor::alertsEnabledChanged, &Monitor::alertThresholdChanged}) {
        connect(&monitor_, signal, this, &MachineView::alertLineChanged);
    }
    for (const auto changed : {&Monitor::primaryCelsiusChanged, &Monitor::isProtectingChanged,
                               &Monitor::alertsEnabledChanged, &Monitor::alertThresholdChanged}) {
        connect(&monitor_, changed, this, [this] { fans_.refreshSurroundings(); });
    }
    connect(&monitor_, &Monitor::smcAvailableChanged, this, &MachineView::smcAvailableChanged);
}

void MachineView::disconnectModels() {
    monitor_.disconnect(this);
}

void MachineView::refresh() {
    sensorChoices_.setSensors(monitor_.sensors());
    sensorChoices_.retranslate();
    fans_.setFans(monitor_.fans());
    fans_.refreshSettings();
    fans_.retranslate();
    refreshSensors();
    refreshTemperature();
    shownStatus_ = monitor_.status();
    Q_EMIT statusChanged();
    Q_EMIT historyChanged();
    Q_EMIT alertLineChanged();
    Q_EMIT smcAvailableChanged();
    Q_EMIT computerNameChanged();
    Q_EMIT sensorCountTextChanged();
}

void MachineView::refreshTemperature() {
    const QString text = temperatureNumber();
    if (std::exchange(shownTemperature_, text) != text) {
        Q_EMIT temperatureChanged();
    }
}

void MachineView::refreshStatus() {
    const HealthStatus status = monitor_.status();
    if (std::exchange(shownStatus_, status) != status) {
        Q_EMIT statusChanged();
    }
}

void MachineView::refreshSensors() {
    const qsizetype before = sensors_.count();
    sensorChoices_.setSensors(monitor_.sensors());
    fans_.refreshSurroundings(); // after the choices, in which the fans look up their sensors
    sensors_.setSensors(shownSortedByName(monitor_.sensors()));

    QList<SensorListEntry> featured;
    const QList<SensorState> states = monitor_.featured();
    featured.reserve(states.size());
    for (const SensorState& state : states) {
        featured.append(shown(state));
    }
    featured_.setSensors(featured);
    panelSensors_.setSensors(featured.mid(0, panelSensorCount));

    if (sensors_.count() != before) {
        Q_EMIT sensorCountTextChanged();
    }
}

QString MachineView::computerName() const {
    return computerName_.isEmpty() ? localized(u"Ce Mac") : computerName_;
}

QString MachineView::temperatureNumber() const {
    const std::optional<double> celsius = monitor_.primaryCelsius();
    return celsius ? NumberFormat::degreesText(*celsius) : QStringLiteral("–");
}

QString MachineView::temperatureText() const {
    const std::optional<double> celsius = monitor_.primaryCelsius();
    return celsius ? NumberFormat::temperatureText(*celsius) : temperatureNumber();
}

QList<double> MachineView::historyTimes() const {
    QList<double> times;
    times.reserve(monitor_.historyTimes().size());
    for (const auto& time : monitor_.historyTimes()) {
        times.append(std::chrono::duration<double, std::milli>(time.time_since_epoch()).count());
    }
    return times;
}

double MachineView::alertLine() const {
    return monitor_.alertsEnabled() ? monitor_.alertThreshold() : std::numeric_limits<double>::quiet_NaN();
}

QString MachineView::historyRange() const {
    const QList<double> history = monitor_.history();
    if (history.isEmpty()) {
        return {};
    }
    const auto [lowest, highest] = std::minmax_element(history.begin(), history.end());
    return NumberFormat::rangeText(NumberFormat::temperatureText(*lowest),
                                   NumberFormat::temperatureText(*highest));
}

QString MachineView::sensorCountText() const {
    return localized(u"%@ capteurs de température", {QString::number(monitor_.sensors().size())});
}

QString MachineView::summary() const {
    QStringList phrases;
    if (hasTemperature()) {
        phrases.append(localized(u"Température du processeur") + u' ' + temperatureText() +
                       QStringLiteral(", ") + statusWord());
    } else if (sensors_.count() > 0) {
        phrases.append(localized(u"Température du processeur") + u' ' + temperatureText());
    } else {
        QString sentence = localized(u"Fenwhirl n'arrive pas à lire les capteurs de ce Mac.");
        sentence.chop(sentence.endsWith(u'.') ? 1 : 0); // the phrases are joined with one
        phrases.append(sentence);
    }
    for (int row = 0; row < fans_.count(); ++row) {
        phrases.append(fans_.at(row)->summary());
    }
    return phrases.join(QStringLiteral(". "));
}

} // namespace Fenwhirl
