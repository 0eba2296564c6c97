// The program in memory: the real windows and the real delegate over models that tests control.

#pragma once

#include "Fenwhirl/Application/AppDelegate.h"
#include "Fenwhirl/Application/WindowControl.h"
#include "Fenwhirl/Localization/LocalizerTranslator.h"
#include "Fenwhirl/Monitoring/MonitorHarness.h"

#include <QCoreApplication>
#include <QQuickWindow>

#include <chrono>
#include <functional>
#include <memory>

namespace Fenwhirl {

class FakeStatusItem : public StatusItem {
public:
    QString text;
    QString shortText;
    bool placed = true;
    int timesTold = 0;
    TextChange lastChange = TextChange::notable;
    bool isPostponed = false;
    bool wasPostponed = false;
    StatusMenu menu;

    FakeStatusItem() = default;

    void setText(const QString& newText, const QString& newShortText, TextChange change) override {
        ++timesTold;
        lastChange = change;
        text = newText;
        shortText = newShortText;
    }

    void setMenu(const StatusMenu& newMenu) override { menu = newMenu; }

    void postpone() override { isPostponed = wasPostponed = true; }

    void appear() override { isPostponed = false; }

    [[nodiscard]] bool isPlaced() const override { return placed; }
};

class FakeAppearance : public SystemAppearance {
public:
    AppearanceChoice chosen = AppearanceChoice::system;

    FakeAppearance() = default;
    using SystemAppearance::setDark;
    using SystemAppearance::setTextScale;

    void choose(AppearanceChoice choice) override { chosen = choice; }
};

class Life {
public:
    MonitorHarness world;
    FakeStatusItem statusItem;
    FakeAppearance appearance;
    int updateChecks = 0;
    std::function<void(const QString& text)> saveReport = [](const QString& /*text*/) {};

    // By default, no test is long enough to see that a window without a picture is not waited for.
    explicit Life(bool onboarded, const WindowSystem& system = {},
                  std::chrono::milliseconds forPicture = std::chrono::hours(1)) {
        QCoreApplication::installTranslator(&translator_);
        world.preferences.setText(QStringLiteral("language"), QStringLiteral("fr"));
        world.preferences.setBoolean(QStringLiteral("didOnboard"), onboarded);
        world.start();
        ProcessServices processes;
        processes.sample = [] { return ProcessSample(); };
        processes.cancelSampling = [] {};
        processes_ = std::make_unique<ProcessMonitor>(processes);
        windows = std::make_unique<WindowControl>(
            world.monitor(), *processes_, appearance,
            ViewServices{.computerName = {},
                         .notify = [](const QString&, const QString&) {},
                         .saveReport = [this](const QString& text) { saveReport(text); },
                         .applicationIcon = [](const QString&) { return QString(); },
                         .openMain = {},
                         .quit = [] {}},
            system);
        delegate = std::make_unique<AppDelegate>(
            world.monitor(), *windows, statusItem, [this] { ++updateChecks; },
            AppDelegate::Patience{.forPlace = std::chrono::milliseconds(0), .forPicture = forPicture});
    }

    ~Life() { QCoreApplication::removeTranslator(&translator_); }

    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    [[nodiscard]] bool mainIsShown() const {
        return windows->main() != nullptr && windows->main()->isVisible();
    }

private:
    LocalizerTranslator translator_;
    std::unique_ptr<ProcessMonitor> processes_;

public:
    std::unique_ptr<WindowControl> windows;
    std::unique_ptr<AppDelegate> delegate;
};

} // namespace Fenwhirl
