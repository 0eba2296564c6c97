// Manages the windows: the main window, the status item's panel, and the QML engine behind them.
//
// None of this exists until something has to be shown: a program that starts hidden loads no QML at all.
// Once created, the main window is kept and only hidden when it is closed, so that it comes back
// immediately and on the same page. While no window is visible, the views sleep (ViewModels::setAwake).
// Some time after the start, after a window has appeared, and after the last one has disappeared, memory that is
// no longer needed is given back to the system.
//
// Threads: main thread only. The models and services must outlive it.

#pragma once

#include "Fenwhirl/Application/PanelControl.h"
#include "Fenwhirl/Application/ViewEngine.h"
#include "Fenwhirl/Application/WindowGeometry.h"
#include "Fenwhirl/Application/WindowSystem.h"
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
#include <utility>

class QQuickWindow;

namespace Fenwhirl {

class Theme;

// The texts of a question with two answers.
struct AlertTexts {
    QString title;
    QString body;
    QString accept; // the default button
    QString later;  // only closes the alert
};

class WindowControl : public QObject {
    Q_OBJECT

public:
    // The delay from the start, and from the end of the last window, until unneeded memory is given back.
    static constexpr std::chrono::seconds trimDelay = std::chrono::seconds(10);
    // The delay from the appearance of a window: making it took far more than showing it takes.
    static constexpr std::chrono::seconds shownTrimDelay = std::chrono::seconds(2);

    // The constructor sets `openMain` of the services. Before `saveReport` is called, the panel is closed.
    WindowControl(Monitor& monitor, ProcessMonitor& processes, SystemAppearance& appearance,
                  ViewServices services, WindowSystem system = {}, QObject* parent = nullptr);
    ~WindowControl() override;

    WindowControl(const WindowControl&) = delete;
    WindowControl& operator=(const WindowControl&) = delete;

    // Set for a launch that is to show nothing but the status item; the first call of `appear` resets it.
    bool hideOnFirstAppearance = false;

    // Makes the program an accessory of the status item, without a Dock icon, until a window is opened.
    void becomeAccessory() { system_.setAccessory(); }

    // From now on the main window is restored to its last position. To be called
    // before the window is created.
    void rememberPlaceIn(const QString& file) { placeFile_ = file; }

    // To be called when the launch is complete: shows the main window, unless it is to stay hidden.
    void appear();
    // Closes the panel, then shows and raises the main window, which is created if it does not exist yet.
    // `token` is the desktop's permission to take the focus.
    void openMain(const QString& token = {});
    // The same, with this page selected.
    void openPage(Page page);
    // Starts a diagnostic report, like the button for it.
    void createReport();
    // Opens the panel at the status item's position, or closes it when it is open. While the program asks
    // something in a modal dialog, brings that to the front instead where it can.
    void togglePanel(const QRect& itemPlace, const QString& token = {});

    // Closes the panel and brings the program to the front with a question that stays above everything else.
    // `accepted` is called if the user agrees.
    void showAlert(const AlertTexts& texts, std::function<void()> accepted);

    // Takes over what was prepared for the first window. To be called before that is opened.
    void usePrepared(PreparedViews views) { prepared_ = std::move(views); }

    // The main window; null before it was first opened.
    [[nodiscard]] QQuickWindow* main() const { return main_.get(); }

    // The status item's panel; null before it was first opened.
    [[nodiscard]] QQuickWindow* panel() const { return panel_.window(); }

    // Whether the engine exists, that is, whether anything was ever shown.
    [[nodiscard]] bool hasEngine() const { return engine_ != nullptr; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    // The main window was drawn for the first time.
    void mainDrawn();
    // The panel was opened or closed.
    void panelShown(bool shown);

private Q_SLOTS:
    void alertAccepted();

private:
    [[nodiscard]] QQmlEngine& engine();
    [[nodiscard]] std::unique_ptr<QQuickWindow> makeWindow(const QUrl& file, const QVariantMap& properties);
    [[nodiscard]] QVariantMap withModels();
    [[nodiscard]] ViewServices withWindows(ViewServices services);
    void applyTheme();
    void applyAppearance();
    void retranslate();
    void watchVisibility(QQuickWindow& window);
    // To be called before a window is destroyed: while that happens the window still emits signals, but is no
    // longer a QQuickWindow. Null is allowed and ignored.
    void stopListening(QQuickWindow* window);
    void updateAwake();

    const WindowSystem system_;
    Monitor& monitor_;
    SystemAppearance& appearance_;
    ViewModels models_;
    std::unique_ptr<QQmlEngine> engine_;
    PreparedViews prepared_; // until the main window exists
    QString placeFile_;      // empty: the position is not remembered
    std::unique_ptr<QQuickWindow> main_;
    std::unique_ptr<WindowGeometryKeeper> place_; // declared later, so that it is destroyed before the window
    PanelControl panel_;
    std::unique_ptr<QQuickWindow> alert_;
    std::function<void()> acceptAlert_;
    QTimer rest_;
};

} // namespace Fenwhirl
