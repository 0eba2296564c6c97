#include "Fenwhirl/Application/AppDelegate.h"

#include "Fenwhirl/Localization/NumberFormat.h"
#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"

#include <utility>

AppDelegate::AppDelegate(Monitor& monitor, WindowControl& windows, StatusItem& statusItem,
                         std::function<void()> startUpdateCheck, QObject* parent)
    : QObject(parent)
    , monitor_(monitor)
    , windows_(windows)
    , statusItem_(statusItem)
    , startUpdateCheck_(std::move(startUpdateCheck)) {
    connect(&statusItem, &StatusItem::activated, &windows, &WindowControl::togglePanel);
    connect(&monitor, &Monitor::polled, this, &AppDelegate::updateStatusItem);
    connect(&monitor, &Monitor::languageChanged, this, &AppDelegate::updateStatusItem);
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, [this] {
        if (!statusItem_.isPlaced())
            windows_.openMain();
    });
    updateStatusItem();
}

void AppDelegate::applicationDidFinishLaunching() {
    startUpdateCheck_();
    if (monitor_.didOnboard()) {
        windows_.hideOnFirstAppearance = true;
        MainWindowBehaviour::setAccessory();
        patience_.start(statusItemPatience);
    }
    windows_.appear();
}

void AppDelegate::applicationShouldHandleReopen(const QString& token) {
    windows_.openMain(token);
}

void AppDelegate::applicationWillTerminate() {
    if (!std::exchange(terminated_, true))
        monitor_.restoreAutomaticBlocking();
}

void AppDelegate::updateStatusItem() {
    const std::optional<double> celsius = monitor_.primaryCelsius();
    const QString shortText =
        celsius ? QString::number(NumberFormat::truncated(*celsius)) + QChar(u'°') : QString();
    statusItem_.setText(monitor_.menuText(), shortText);
}
