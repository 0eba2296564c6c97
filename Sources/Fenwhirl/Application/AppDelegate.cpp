#include "Fenwhirl/Application/AppDelegate.h"

#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"

#include <QCoreApplication>

#include <cmath>
#include <utility>

namespace Fenwhirl {

AppDelegate::AppDelegate(Monitor& monitor, WindowControl& windows, StatusItem& statusItem,
                         std::function<void()> startUpdateCheck, Patience patience, QObject* parent)
    : QObject(parent)
    , monitor_(monitor)
    , windows_(windows)
    , statusItem_(statusItem)
    , startUpdateCheck_(std::move(startUpdateCheck))
    , patience_(patience) {
    connect(&statusItem, &StatusItem::activated, &windows, &WindowControl::togglePanel);
    connect(&windows, &WindowControl::panelShown, &statusItem, &StatusItem::setOpen);
    connect(&monitor, &Monitor::polled, this, &AppDelegate::updateStatusItemAfterPoll);
    connect(&monitor, &Monitor::polled, this, &AppDelegate::applyChosenPreset);
    connect(&monitor, &Monitor::languageChanged, this, &AppDelegate::updateStatusItem);
    connect(&monitor, &Monitor::languageChanged, this, &AppDelegate::updateStatusMenu);
    connect(&monitor, &Monitor::activePresetChanged, this, &AppDelegate::updateStatusMenu);
    patienceTimer_.setSingleShot(true);
    connect(&patienceTimer_, &QTimer::timeout, this, [this] {
        if (!statusItem_.isPlaced()) {
            windows_.openMain();
        }
    });
    updateStatusItem();
    updateStatusMenu();
}

void AppDelegate::applicationDidFinishLaunching(Start start) {
    startUpdateCheck_();
    if (monitor_.didOnboard() || start == Start::hidden) {
        windows_.hideOnFirstAppearance = true;
        windows_.becomeAccessory();
        patienceTimer_.start(patience_.forPlace);
        windows_.appear();
        finishLaunch();
        return;
    }
    statusItem_.postpone();
    connect(&windows_, &WindowControl::mainDrawn, this, &AppDelegate::finishLaunch);
    // A window that nobody sees, on another virtual desktop for instance, is never drawn.
    QTimer::singleShot(patience_.forPicture, this, &AppDelegate::finishLaunch);
    windows_.appear();
}

void AppDelegate::finishLaunch() {
    if (!std::exchange(hasLaunched_, true)) {
        statusItem_.appear();
        Q_EMIT launched();
    }
}

void AppDelegate::applicationShouldHandleReopen(const QString& token) {
    windows_.openMain(token);
}

void AppDelegate::choosePreset(Preset preset) {
    chosenPreset_ = preset;
    applyChosenPreset();
}

void AppDelegate::applyChosenPreset() {
    if (chosenPreset_ && !monitor_.fans().isEmpty()) {
        monitor_.apply(*std::exchange(chosenPreset_, std::nullopt));
    }
}

void AppDelegate::applicationWillTerminate() {
    if (!std::exchange(terminated_, true)) {
        monitor_.restoreAutomaticBlocking();
    }
}

void AppDelegate::updateStatusItem() {
    notedRPM_ = 0;
    updateStatusItemAfterPoll();
}

// The measured speed of a fan that runs steadily changes a little with every poll. If the desktop were told each time, it
// would read the whole item again, with all its pictures.
void AppDelegate::updateStatusItemAfterPoll() {
    constexpr double noticeableRPM = 10;
    const double rpm = monitor_.averageRPM();
    const bool isSlight = notedRPM_ > 0 && std::abs(rpm - notedRPM_) < noticeableRPM;
    if (!isSlight) {
        notedRPM_ = rpm;
    }
    const std::optional<double> celsius = monitor_.primaryCelsius();
    const QString shortText =
        celsius ? QString::number(NumberFormat::truncated(*celsius)) + QChar(u'°') : QString();
    statusItem_.setText(monitor_.menuText(), shortText,
                        isSlight ? StatusItem::TextChange::slight : StatusItem::TextChange::notable);
}

void AppDelegate::updateStatusMenu() {
    StatusMenu menu;
    for (const Preset preset : allPresets) {
        menu.push_back({.text = title(preset),
                        .choose = [this, preset] { choosePreset(preset); },
                        .isCurrent = monitor_.activePreset() == preset});
    }
    menu.push_back({});
    menu.push_back({.text = localized(u"Ouvrir Fenwhirl"), .choose = [this] { windows_.openMain(); }});
    menu.push_back({.text = localized(u"Quitter"), .choose = [] { QCoreApplication::quit(); }});
    statusItem_.setMenu(menu);
}

} // namespace Fenwhirl
