// All view models in one object, which is the only access that QML has to the models.
//
// Threads: main thread only. It is asleep until a window is shown: the application wakes it with the first
// visible window and puts it to sleep with the last. The models and services must outlive it.

#pragma once

#include "Fenwhirl/Views/AppsView.h"
#include "Fenwhirl/Views/ControlView.h"
#include "Fenwhirl/Views/MachineView.h"
#include "Fenwhirl/Views/PageList.h"
#include "Fenwhirl/Views/PreferencesView.h"
#include "Fenwhirl/Views/PresetList.h"
#include "Fenwhirl/Views/ReportView.h"

#include <QObject>

#include <functional>

namespace Fenwhirl {

// What the views need from the application.
struct ViewServices {
    QString computerName; // the system's name for it; empty when there is none
    PreferencesView::Notify notify;
    ReportView::Save saveReport;
    IconSource applicationIcon;     // for the rows of the apps page
    std::function<void()> openMain; // shows and raises the main window
    std::function<void()> quit;     // quits the program in the normal way
};

class ViewModels : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(Fenwhirl::MachineView* machine READ machine CONSTANT)
    Q_PROPERTY(Fenwhirl::ControlView* control READ control CONSTANT)
    Q_PROPERTY(Fenwhirl::PresetList* presets READ presets CONSTANT)
    Q_PROPERTY(Fenwhirl::PageList* pages READ pages CONSTANT)
    Q_PROPERTY(Fenwhirl::PreferencesView* preferences READ preferences CONSTANT)
    Q_PROPERTY(Fenwhirl::ReportView* report READ report CONSTANT)
    Q_PROPERTY(Fenwhirl::AppsView* apps READ apps CONSTANT)

public:
    ViewModels(Monitor& monitor, ProcessMonitor& processes, const ViewServices& services,
               QObject* parent = nullptr);

    void setAwake(bool awake);
    // Rebuilds every displayed text; called after a change of the interface language.
    void retranslate();

    [[nodiscard]] MachineView* machine() { return &machine_; }

    [[nodiscard]] ControlView* control() { return &control_; }

    [[nodiscard]] PresetList* presets() { return &presets_; }

    [[nodiscard]] PageList* pages() { return &pages_; }

    [[nodiscard]] PreferencesView* preferences() { return &preferences_; }

    [[nodiscard]] ReportView* report() { return &report_; }

    [[nodiscard]] AppsView* apps() { return &apps_; }

    Q_INVOKABLE void openMain() { openMain_(); }

    Q_INVOKABLE void quit() { quit_(); }

private:
    std::function<void()> openMain_;
    std::function<void()> quit_;
    MachineView machine_;
    ControlView control_;
    PresetList presets_;
    PageList pages_;
    PreferencesView preferences_;
    ReportView report_;
    AppsView apps_;
};

} // namespace Fenwhirl
