#include "Fenwhirl/Views/PreferencesView.h"

#include "Fenwhirl/Localization/LanguageNames.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"
#include "Fenwhirl/Views/HealthThresholds.h"

#include <QCoreApplication>

#include <utility>

namespace Fenwhirl {

PreferencesView::PreferencesView(Monitor& monitor, Notify notify, QObject* parent)
    : LiveView(parent)
    , monitor_(monitor)
    , notify_(std::move(notify)) {}

void PreferencesView::connectModels() {
    connect(&monitor_, &Monitor::launchAtLoginChanged, this, &PreferencesView::launchAtLoginChanged);
    connect(&monitor_, &Monitor::themeChanged, this, &PreferencesView::themeChanged);
    connect(&monitor_, &Monitor::languageChanged, this, &PreferencesView::languageChanged);
    connect(&monitor_, &Monitor::warmThresholdChanged, this, &PreferencesView::thresholdsChanged);
    connect(&monitor_, &Monitor::hotThresholdChanged, this, &PreferencesView::thresholdsChanged);
    connect(&monitor_, &Monitor::alertsEnabledChanged, this, &PreferencesView::alertsChanged);
    connect(&monitor_, &Monitor::alertThresholdChanged, this, &PreferencesView::alertsChanged);
    connect(&monitor_, &Monitor::didOnboardChanged, this, &PreferencesView::didOnboardChanged);
}

void PreferencesView::disconnectModels() {
    monitor_.disconnect(this);
}

void PreferencesView::refresh() {
    Q_EMIT launchAtLoginChanged();
    Q_EMIT themeChanged();
    Q_EMIT languageChanged();
    Q_EMIT thresholdsChanged();
    Q_EMIT alertsChanged();
    Q_EMIT didOnboardChanged();
}

QString PreferencesView::versionText() const {
    return QStringLiteral("Fenwhirl ") + QCoreApplication::applicationVersion();
}

void PreferencesView::setTheme(int theme) {
    if (theme >= 0 && theme < static_cast<int>(allAppThemes.size())) {
        monitor_.setTheme(allAppThemes.at(static_cast<std::size_t>(theme)));
    }
}

QStringList PreferencesView::languageNames() const {
    QStringList names;
    for (const AppLanguage language : allAppLanguages) {
        names.append(nativeName(language));
    }
    return names;
}

void PreferencesView::setLanguage(int language) {
    if (language >= 0 && language < static_cast<int>(allAppLanguages.size())) {
        monitor_.setLanguage(allAppLanguages.at(static_cast<std::size_t>(language)));
    }
}

void PreferencesView::setWarmThreshold(double celsius) {
    const auto [warm, hot] = withWarm({monitor_.warmThreshold(), monitor_.hotThreshold()}, celsius);
    monitor_.setWarmThreshold(warm);
    if (hot != monitor_.hotThreshold()) {
        monitor_.setHotThreshold(hot);
    }
}

void PreferencesView::setHotThreshold(double celsius) {
    const auto [warm, hot] = withHot({monitor_.warmThreshold(), monitor_.hotThreshold()}, celsius);
    monitor_.setHotThreshold(hot);
    if (warm != monitor_.warmThreshold()) {
        monitor_.setWarmThreshold(warm);
    }
}

QString PreferencesView::warmText() const {
    return localized(u"Mac chaud à partir de %@ °C", {NumberFormat::degreesText(monitor_.warmThreshold())});
}

QString PreferencesView::hotText() const {
    return localized(u"Surchauffe à partir de %@ °C", {NumberFormat::degreesText(monitor_.hotThreshold())});
}

QString PreferencesView::alertText() const {
    return localized(u"Seuil d'alerte : %@ °C", {NumberFormat::degreesText(monitor_.alertThreshold())});
}

void PreferencesView::testAlert() {
    notify_(QStringLiteral("Fenwhirl"), localized(u"Ceci est une alerte de test."));
}

} // namespace Fenwhirl
