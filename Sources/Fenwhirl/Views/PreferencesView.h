// The user's preferences, as the settings, alerts and onboarding pages show and change them.
//
// A choice from a list is an index in the order of its enumeration. The monitor stores every value as soon as
// it is set.
//
// Threads: main thread only.

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Views/LiveView.h"

#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace Fenwhirl {

class PreferencesView : public Fenwhirl::LiveView {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QString versionText READ versionText CONSTANT)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(int theme READ theme WRITE setTheme NOTIFY themeChanged)
    Q_PROPERTY(QStringList languageNames READ languageNames NOTIFY languageChanged)
    Q_PROPERTY(int language READ language WRITE setLanguage NOTIFY languageChanged)
    // Thresholds in °C.
    Q_PROPERTY(double warmThreshold READ warmThreshold WRITE setWarmThreshold NOTIFY thresholdsChanged)
    Q_PROPERTY(QString warmText READ warmText NOTIFY thresholdsChanged)
    Q_PROPERTY(double hotThreshold READ hotThreshold WRITE setHotThreshold NOTIFY thresholdsChanged)
    Q_PROPERTY(QString hotText READ hotText NOTIFY thresholdsChanged)
    Q_PROPERTY(bool alertsEnabled READ alertsEnabled WRITE setAlertsEnabled NOTIFY alertsChanged)
    Q_PROPERTY(double alertThreshold READ alertThreshold WRITE setAlertThreshold NOTIFY alertsChanged)
    Q_PROPERTY(QString alertText READ alertText NOTIFY alertsChanged)
    Q_PROPERTY(bool didOnboard READ didOnboard NOTIFY didOnboardChanged)

public:
    using Notify = std::function<void(const QString& title, const QString& message)>;

    // `notify` shows a notification; it is used by the test button of the alerts page.
    PreferencesView(Monitor& monitor, Notify notify, QObject* parent = nullptr);

    [[nodiscard]] QString versionText() const;

    [[nodiscard]] bool launchAtLogin() const { return monitor_.launchAtLogin(); }

    void setLaunchAtLogin(bool on) { monitor_.setLaunchAtLogin(on); }

    [[nodiscard]] int theme() const { return static_cast<int>(monitor_.theme()); }

    void setTheme(int theme);
    [[nodiscard]] QStringList languageNames() const;

    [[nodiscard]] int language() const { return static_cast<int>(monitor_.language()); }

    void setLanguage(int language);

    [[nodiscard]] double warmThreshold() const { return monitor_.warmThreshold(); }

    void setWarmThreshold(double celsius);
    [[nodiscard]] QString warmText() const;

    [[nodiscard]] double hotThreshold() const { return monitor_.hotThreshold(); }

    void setHotThreshold(double celsius);
    [[nodiscard]] QString hotText() const;

    [[nodiscard]] bool alertsEnabled() const { return monitor_.alertsEnabled(); }

    void setAlertsEnabled(bool on) { monitor_.setAlertsEnabled(on); }

    [[nodiscard]] double alertThreshold() const { return monitor_.alertThreshold(); }

    void setAlertThreshold(double celsius) { monitor_.setAlertThreshold(celsius); }

    [[nodiscard]] QString alertText() const;

    [[nodiscard]] bool didOnboard() const { return monitor_.didOnboard(); }

    Q_INVOKABLE void testAlert();

    Q_INVOKABLE void finishOnboarding() { monitor_.setDidOnboard(true); }

Q_SIGNALS:
    void launchAtLoginChanged();
    void themeChanged();
    void languageChanged();
    void thresholdsChanged();
    void alertsChanged();
    void didOnboardChanged();

protected:
    void connectModels() override;
    void disconnectModels() override;
    void refresh() override;

private:
    Monitor& monitor_;
    Notify notify_;
};

} // namespace Fenwhirl
