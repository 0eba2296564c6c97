// The view model of the machine for the pages and the panel: temperatures, fans and the health verdict, as
// texts ready for display.
//
// Threads: main thread only. The lists live as long as this object.

#pragma once

#include "Fenwhirl/Views/FanList.h"
#include "Fenwhirl/Views/LiveView.h"
#include "Fenwhirl/Views/SensorChoices.h"
#include "Fenwhirl/Views/SensorList.h"

#include <QList>
#include <QString>

namespace Fenwhirl {

class MachineView : public Fenwhirl::LiveView {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QString computerName READ computerName NOTIFY computerNameChanged)
    Q_PROPERTY(bool smcAvailable READ smcAvailable NOTIFY smcAvailableChanged)
    // The main temperature as a whole number without its unit; an en dash when there is none.
    Q_PROPERTY(QString temperatureNumber READ temperatureNumber NOTIFY temperatureChanged)
    // The same with its unit, for screen readers.
    Q_PROPERTY(QString temperatureText READ temperatureText NOTIFY temperatureChanged)
    Q_PROPERTY(bool hasTemperature READ hasTemperature NOTIFY temperatureChanged)
    // The main temperatures of the last ten minutes in °C, oldest first.
    Q_PROPERTY(QList<double> history READ history NOTIFY historyChanged)
    // When each value of `history` was read, in milliseconds since the Unix epoch.
    Q_PROPERTY(QList<double> historyTimes READ historyTimes NOTIFY historyChanged)
    // The alert threshold in °C; NaN while alerts are off.
    Q_PROPERTY(double alertLine READ alertLine NOTIFY alertLineChanged)
    // The lowest and highest value of `history`, for screen readers; empty while there are none.
    Q_PROPERTY(QString historyRange READ historyRange NOTIFY historyChanged)
    Q_PROPERTY(bool healthy READ healthy NOTIFY statusChanged)
    // An index in the order normal, warm, hot.
    Q_PROPERTY(int status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString statusWord READ statusWord NOTIFY statusChanged)
    Q_PROPERTY(QString statusDetail READ statusDetail NOTIFY statusChanged)
    Q_PROPERTY(QString sensorCountText READ sensorCountText NOTIFY sensorCountTextChanged)
    Q_PROPERTY(Fenwhirl::FanList* fans READ fans CONSTANT)
    Q_PROPERTY(Fenwhirl::SensorList* sensors READ sensors CONSTANT)           // all, sorted by name
    Q_PROPERTY(Fenwhirl::SensorList* featured READ featured CONSTANT)         // at most six
    Q_PROPERTY(Fenwhirl::SensorList* panelSensors READ panelSensors CONSTANT) // the first three of `featured`
    Q_PROPERTY(Fenwhirl::SensorChoices* sensorChoices READ sensorChoices CONSTANT)

public:
    // `computerName` is the system's name for this computer; empty when the system gives none.
    MachineView(Monitor& monitor, QString computerName, QObject* parent = nullptr);

    [[nodiscard]] QString computerName() const;

    [[nodiscard]] bool smcAvailable() const { return monitor_.smcAvailable(); }

    [[nodiscard]] QString temperatureNumber() const;
    [[nodiscard]] QString temperatureText() const;

    [[nodiscard]] bool hasTemperature() const { return monitor_.primaryCelsius().has_value(); }

    [[nodiscard]] QList<double> history() const { return monitor_.history(); }

    [[nodiscard]] QList<double> historyTimes() const;

    [[nodiscard]] double alertLine() const;

    [[nodiscard]] QString historyRange() const;

    [[nodiscard]] bool healthy() const { return monitor_.status() == HealthStatus::normal; }

    [[nodiscard]] int status() const { return static_cast<int>(monitor_.status()); }

    [[nodiscard]] QString statusWord() const { return word(monitor_.status()); }

    [[nodiscard]] QString statusDetail() const { return detail(monitor_.status()); }

    [[nodiscard]] QString sensorCountText() const;

    // A summary of the machine's current state for screen readers: main temperature and health verdict, or that
    // there are none, and the speed and mode of each fan.
    Q_INVOKABLE [[nodiscard]] QString summary() const;

    [[nodiscard]] FanList* fans() { return &fans_; }

    [[nodiscard]] SensorList* sensors() { return &sensors_; }

    [[nodiscard]] SensorList* featured() { return &featured_; }

    [[nodiscard]] SensorList* panelSensors() { return &panelSensors_; }

    [[nodiscard]] SensorChoices* sensorChoices() { return &sensorChoices_; }

Q_SIGNALS:
    void computerNameChanged();
    void smcAvailableChanged();
    void temperatureChanged();
    void historyChanged();
    void alertLineChanged();
    void statusChanged();
    void sensorCountTextChanged();

protected:
    void connectModels() override;
    void disconnectModels() override;
    void refresh() override;

private:
    void refreshTemperature();
    void refreshStatus();
    void refreshSensors();

    Monitor& monitor_;
    QString computerName_;
    QString shownTemperature_;
    HealthStatus shownStatus_ = HealthStatus::normal;
    SensorChoices sensorChoices_;
    FanList fans_;
    SensorList sensors_;
    SensorList featured_;
    SensorList panelSensors_;
};

} // namespace Fenwhirl
