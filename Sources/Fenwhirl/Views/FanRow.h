// The view model of one fan for the cards and the panel, through which their controls write its setting.
//
// Every write goes through Monitor::setSetting, which saves the setting and clears the active preset. Nothing
// is sent to the fan from here. Texts are ready for display, in the interface language.
//
// Threads: main thread only. Owned and updated by FanList. It lives as long as the fan stays in the list, so
// that the next reading does not destroy a control in use.

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace Fenwhirl {

class SensorChoices;

class FanRow : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the list of fans")
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(QString rangeText READ rangeText NOTIFY rangeChanged)
    Q_PROPERTY(QString speedText READ speedText NOTIFY speedChanged)
    Q_PROPERTY(double speedFraction READ speedFraction NOTIFY speedChanged)
    // requestedFraction, requestedText: the speed last requested of the fan, as a fraction of its range and
    // as text. NaN and empty while the fan is left to macOS.
    Q_PROPERTY(double requestedFraction READ requestedFraction NOTIFY requestChanged)
    // Whether a speed is being requested of the fan. When false, a manual mode may be selected but is not in
    // force.
    Q_PROPERTY(bool driven READ isDriven NOTIFY requestChanged)
    Q_PROPERTY(QString requestedText READ requestedText NOTIFY requestChanged)
    // The ends of the speed sliders; the upper one is always above the lower one.
    Q_PROPERTY(double lowestRPM READ lowestRPM NOTIFY rangeChanged)
    Q_PROPERTY(double highestRPM READ highestRPM NOTIFY rangeChanged)
    // An index in the order automatic, constant, sensor.
    Q_PROPERTY(int mode READ mode WRITE setMode NOTIFY settingChanged)
    Q_PROPERTY(double constantRPM READ constantRPM WRITE setConstantRPM NOTIFY settingChanged)
    Q_PROPERTY(QString constantText READ constantText NOTIFY settingChanged)
    Q_PROPERTY(QString constantSpeedText READ constantSpeedText NOTIFY settingChanged) // the number alone
    // The value of the panel's slider. Writing it switches the fan to a constant speed.
    Q_PROPERTY(double panelRPM READ panelRPM WRITE setPanelRPM NOTIFY panelRPMChanged)
    Q_PROPERTY(QString panelSpeedText READ panelSpeedText NOTIFY panelRPMChanged)
    // An index into SensorChoices::names; -1 when the stored sensor does not exist.
    Q_PROPERTY(int sensorChoice READ sensorChoice WRITE setSensorChoice NOTIFY settingChanged)
    Q_PROPERTY(double startTemp READ startTemp WRITE setStartTemp NOTIFY settingChanged)
    Q_PROPERTY(QString startText READ startText NOTIFY settingChanged)
    Q_PROPERTY(double maxTemp READ maxTemp WRITE setMaxTemp NOTIFY settingChanged)
    Q_PROPERTY(QString maxText READ maxText NOTIFY settingChanged)
    Q_PROPERTY(QString widestMaxText READ widestMaxText NOTIFY settingChanged) // with a value of three digits
    // The fan's minimum and maximum as texts, without the unit.
    Q_PROPERTY(QString lowestText READ lowestText NOTIFY rangeChanged)
    Q_PROPERTY(QString highestText READ highestText NOTIFY rangeChanged)
    // For the curve editor, in °C: the temperature that drives the fan (NaN while unknown), and the one at
    // which heat protection begins (NaN while there is none). Updated only while the fan follows a sensor.
    Q_PROPERTY(double drivingTemperature READ drivingTemperature NOTIFY surroundingsChanged)
    Q_PROPERTY(double alertAt READ alertAt NOTIFY surroundingsChanged)
    // Whether the main temperature drives the fan, so that the rules about that temperature apply.
    Q_PROPERTY(bool followsMainTemperature READ followsMainTemperature NOTIFY surroundingsChanged)
    Q_PROPERTY(bool protecting READ isProtecting NOTIFY surroundingsChanged)

public:
    FanRow(Monitor& monitor, const SensorChoices& choices, const FanState& fan, QObject* parent);

    [[nodiscard]] int index() const { return fan_.id; }

    // Takes a new reading of this fan.
    void setFan(const FanState& fan);
    // Call when the fan's setting, or the choices it refers to, may have changed.
    void refreshSetting();
    // Call when temperatures, alerts or heat protection may have changed.
    void refreshSurroundings();
    // Rebuilds every text. Also needed when the number of fans changes, because names depend on it.
    void retranslate();

    [[nodiscard]] const QString& name() const { return name_; }

    [[nodiscard]] const QString& rangeText() const { return rangeText_; }

    [[nodiscard]] const QString& speedText() const { return speedText_; }

    // Name, speed and mode in one phrase, for screen readers.
    [[nodiscard]] QString summary() const;

    [[nodiscard]] double speedFraction() const;
    [[nodiscard]] double requestedFraction() const;
    [[nodiscard]] QString requestedText() const;

    [[nodiscard]] bool isDriven() const { return fan_.requestedRPM.has_value(); }

    [[nodiscard]] double lowestRPM() const;
    [[nodiscard]] double highestRPM() const;

    [[nodiscard]] int mode() const { return static_cast<int>(setting_.mode); }

    void setMode(int mode);

    [[nodiscard]] double constantRPM() const { return setting_.constantRPM; }

    void setConstantRPM(double rpm);
    [[nodiscard]] QString constantText() const;
    [[nodiscard]] QString constantSpeedText() const;
    [[nodiscard]] double panelRPM() const;
    [[nodiscard]] QString panelSpeedText() const;
    void setPanelRPM(double rpm);
    [[nodiscard]] int sensorChoice() const;
    void setSensorChoice(int choice);

    [[nodiscard]] double startTemp() const { return setting_.startTemp; }

    void setStartTemp(double celsius);
    [[nodiscard]] QString startText() const;

    [[nodiscard]] double maxTemp() const { return setting_.maxTemp; }

    void setMaxTemp(double celsius);
    [[nodiscard]] QString maxText() const;
    [[nodiscard]] QString widestMaxText() const;
    [[nodiscard]] QString lowestText() const;
    [[nodiscard]] QString highestText() const;
    [[nodiscard]] double drivingTemperature() const;
    [[nodiscard]] double alertAt() const;

    [[nodiscard]] bool followsMainTemperature() const { return surroundings_.followsMainTemperature; }

    [[nodiscard]] bool isProtecting() const { return surroundings_.isProtecting; }

Q_SIGNALS:
    void nameChanged();
    void rangeChanged();
    void speedChanged();
    void requestChanged();
    void settingChanged();
    void panelRPMChanged();
    void surroundingsChanged();

private:
    [[nodiscard]] double fractionOf(double rpm) const;
    void writeSetting(const FanSetting& setting);

    Monitor& monitor_;
    const SensorChoices& choices_;
    FanState fan_;
    FanSetting setting_;

    struct Surroundings {
        std::optional<double> celsius;
        std::optional<double> alertAt;
        bool followsMainTemperature = true;
        bool isProtecting = false;

        bool operator==(const Surroundings&) const = default;
    };

    [[nodiscard]] Surroundings surroundings() const;

    Surroundings surroundings_;
    QString name_;
    QString rangeText_;
    QString speedText_;
};

} // namespace Fenwhirl
