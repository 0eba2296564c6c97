// The windows: the main window, the status item's panel, and the QML engine behind them.
//
// Nothing of it exists until something is to be shown: a program that starts hidden loads no QML at all. Once
// made, the main window is kept and only hidden when it is closed, so that it comes back at once and on the
// same page. While no window can be seen, the views sleep (ViewModels::setAwake). A little after the start,
// and after the last window has gone, the memory that they alone needed is given back.
//
// Threads: main thread only. The models and services must outlive it.

#pragma once

#include "Fenwhirl/Application/PanelControl.h"
#include "Fenwhirl/Application/WindowPlace.h"
#include "Fenwhirl/Platform/Desktop/SystemAppearance.h"
#include "Fenwhirl/Views/ViewModels.h"

#include <QObject>
#include <QQmlEngine>
#include <QRect>
#include <QString>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <memory>

class QQuickWindow;

namespace Fenwhirl {
class Theme;
}

// A question with two answers.
struct AlertTexts {
    QString title;
    QString body;
    QString accept; // the default button
    QString later;  // closes the alert, nothing more
};

class WindowControl : public QObject {
    Q_OBJECT

public:
    // From the start, and from the last window's end, until memory that only they needed is given back.
    static constexpr std::chrono::seconds restPatience = std::chrono::seconds(10);

    // `openMain` of the services is filled here.
    WindowControl(Monitor& monitor, ProcessMonitor& processes, SystemAppearance& appearance,
                  ViewServices services, QObject* parent = nullptr);
    ~WindowControl() override;

    WindowControl(const WindowControl&) = delete;
    WindowControl& operator=(const WindowControl&) = delete;

    // Set at a launch that is to show nothing but the status item; consumed by the first `appear`.
    bool hideOnFirstAppearance = false;

    // From now on the main window comes back where it was; not yet made.
    void rememberPlaceIn(const QString& file) { placeFile_ = file; }

    // The launch is done: shows the main window, unless it is to hide.
    void appear();
    // Closes the panel, then shows and raises the main window; makes it if there is none yet. `token` is the
    // desktop's permission to take the focus.
    void openMain(const QString& token = {});
    // The same with this page.
    void openPage(Page page);
    // Begins a diagnostic report, as its button does.
    void createReport();
    // Opens the panel at the status item's place, or closes it when it is open.
    void togglePanel(const QRect& itemPlace, const QString& token = {});

    // Brings the program to the front with a question that stays before everything else; `accepted` is called
    // when the user agrees.
    void showAlert(const AlertTexts& texts, std::function<void()> accepted);

    // The main window; null before it was first opened.
    [[nodiscard]] QQuickWindow* main() const { return main_.get(); }

    // The status item's panel; null before it was first opened.
    [[nodiscard]] QQuickWindow* panel() const { return panel_.window(); }

    // Whether the engine exists, that is whether anything was ever shown.
    [[nodiscard]] bool hasEngine() const { return engine_ != nullptr; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    // The panel was opened or closed.
    void panelShown(bool shown);

private Q_SLOTS:
    void alertAccepted();

private:
    [[nodiscard]] QQmlEngine& engine();
    [[nodiscard]] std::unique_ptr<QQuickWindow> makeWindow(const QUrl& file, const QVariantMap& properties);
    [[nodiscard]] QVariantMap withModels();
    void applyTheme();
    void applyAppearance();
    void retranslate();
    void watchVisibility(QQuickWindow& window);
    // Before a window goes: it says that it does, and by then it is no window any more. Null is nothing.
    void stopListening(QQuickWindow* window);
    void updateAwake();

    Monitor& monitor_;
    SystemAppearance& appearance_;
    ViewModels models_;
    std::unique_ptr<QQmlEngine> engine_;
    QString placeFile_; // empty: nothing is remembered
    std::unique_ptr<QQuickWindow> main_;
    std::unique_ptr<WindowPlaceKeeper> place_; // goes before the window
    PanelControl panel_;
    std::unique_ptr<QQuickWindow> alert_;
    std::function<void()> acceptAlert_;
    QTimer rest_;
};
