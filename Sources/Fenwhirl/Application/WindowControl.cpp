#include "Fenwhirl/Application/WindowControl.h"

#include "Fenwhirl/Platform/Desktop/GraphicsDevice.h"
#include "Fenwhirl/Platform/IdleMemory.h"
#include "Fenwhirl/Views/Components/Palette.h"
#include "Fenwhirl/Views/Components/Theme.h"
#include "Fenwhirl/Views/FirstTexts.h"
#include "Fenwhirl/Views/Views.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QPlatformSurfaceEvent>
#include <QQmlComponent>
#include <QQuickWindow>

#include <utility>

namespace Fenwhirl {

namespace {

bool canBeSeen(const QQuickWindow* window) {
    return window != nullptr && window->isVisible() && window->visibility() != QWindow::Minimized;
}

AppearanceChoice choiceOf(AppTheme theme) {
    switch (theme) {
    case AppTheme::dark:
        return AppearanceChoice::dark;
    case AppTheme::light:
        return AppearanceChoice::light;
    case AppTheme::automatic:
        break;
    }
    return AppearanceChoice::system;
}

// The palette for what Qt draws itself beside our windows: its dialog for saving a file,
// where the desktop has none.
QPalette dialogPalette(bool dark) {
    const Palette& colors = palette(dark);
    const auto color = [&colors](PaletteColor name) { return colors[static_cast<std::size_t>(name)]; };
    QPalette palette(color(PaletteColor::card), color(PaletteColor::window)); // derives bevels from these
    for (const auto& [role, name] : {std::pair(QPalette::WindowText, PaletteColor::text),
                                     {QPalette::Text, PaletteColor::text},
                                     {QPalette::ButtonText, PaletteColor::text},
                                     {QPalette::ToolTipText, PaletteColor::text},
                                     {QPalette::ToolTipBase, PaletteColor::popup},
                                     {QPalette::Base, PaletteColor::card},
                                     {QPalette::AlternateBase, PaletteColor::well},
                                     {QPalette::Highlight, PaletteColor::accent},
                                     {QPalette::HighlightedText, PaletteColor::onAccent},
                                     {QPalette::Link, PaletteColor::accentSoft},
                                     {QPalette::PlaceholderText, PaletteColor::muted}}) {
        palette.setColor(role, color(name));
    }
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, color(PaletteColor::muted));
    }
    return palette;
}

} // namespace

WindowControl::WindowControl(Monitor& monitor, ProcessMonitor& processes, SystemAppearance& appearance,
                             ViewServices services, WindowSystem system, QObject* parent)
    : QObject(parent)
    , system_(std::move(system))
    , monitor_(monitor)
    , appearance_(appearance)
    , models_(monitor, processes, withWindows(std::move(services)))
    , panel_(
          [this](const QVariantMap& properties) {
              QVariantMap all = withModels();
              all.insert(properties);
              return makeWindow(menuPanelFile(), all);
          },
          system_.focusFollowsPointer) {
    connect(&panel_, &PanelControl::opening, this, [this] { models_.setAwake(true); });
    connect(&panel_, &PanelControl::visibilityChanged, this, &WindowControl::updateAwake);
    connect(&panel_, &PanelControl::visibilityChanged, this,
            [this] { Q_EMIT panelShown(panel() != nullptr && panel()->isVisible()); });
    connect(&monitor, &Monitor::themeChanged, this, &WindowControl::applyTheme);
    connect(&monitor, &Monitor::languageChanged, this, &WindowControl::retranslate);
    connect(&appearance, &SystemAppearance::changed, this, &WindowControl::applyAppearance);
    rest_.setSingleShot(true);
    connect(&rest_, &QTimer::timeout, this, [] { releaseIdleMemory(); });
    rest_.start(trimDelay);
    applyTheme();
}

WindowControl::~WindowControl() {
    stopListening(main_.get());
    stopListening(alert_.get());
}

ViewServices WindowControl::withWindows(ViewServices services) {
    services.openMain = [this] { openMain(); };
    services.saveReport = [this, save = std::move(services.saveReport)](const QString& text) {
        // While it asks where to save the report, our windows may ignore input. The panel must not grab it.
        panel_.close();
        save(text);
    };
    return services;
}

QQmlEngine& WindowControl::engine() {
    if (!engine_) {
        engine_ = prepared_.engine ? std::move(prepared_.engine) : makeViewEngine();
    }
    return *engine_;
}

std::unique_ptr<QQuickWindow> WindowControl::makeWindow(const QUrl& file, const QVariantMap& properties) {
    QQmlComponent component(&engine(), file);
    if (!component.isReady()) {
        qFatal("A window could not be made: %s", qUtf8Printable(component.errorString()));
    }
    applyAppearance(); // the theme exists once the file's imports are loaded, and nothing is drawn yet
    QObject* object = component.createWithInitialProperties(properties);
    std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow*>(object));
    if (!window) {
        delete object;
        qFatal("A window could not be made: %s", qUtf8Printable(component.errorString()));
    }
    chooseGraphicsDevice(*window);
    return window;
}

QVariantMap WindowControl::withModels() {
    return {{QStringLiteral("models"), QVariant::fromValue(&models_)}};
}

void WindowControl::appear() {
    if (!std::exchange(hideOnFirstAppearance, false)) {
        openMain();
    }
}

void WindowControl::openMain(const QString& token) {
    panel_.close();
    system_.setRegular();
    if (!main_) {
        models_.setAwake(true); // so that the first frame shows the current state
        if (!prepared_.loading.empty()) {
            continueLoading();
            prepareFirstTexts(appearance_.textScale()); // instead of waiting for the engine's thread
        }
        main_ = makeWindow(mainWindowFile(), withModels());
        prepared_.loading.clear();
        // Queued, because the view itself also has something to do after its first picture, and because other renderers
        // emit the signal on a thread of their own.
        connect(main_.get(), &QQuickWindow::frameSwapped, this, &WindowControl::mainDrawn,
                static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
        if (!placeFile_.isEmpty()) {
            place_ = std::make_unique<WindowGeometryKeeper>(*main_, placeFile_);
        }
        watchVisibility(*main_);
        main_->installEventFilter(this);
        // Newer versions of Qt set the window's style again at every change of its state, so the window is
        // configured again, too.
        connect(main_.get(), &QWindow::windowStateChanged, this,
                [this, before = main_->windowStates()]() mutable {
                    // The signal is also emitted when nothing has changed.
                    const Qt::WindowStates states = main_->windowStates();
                    if (std::exchange(before, states) != states && main_->handle() != nullptr) {
                        system_.configure(*main_);
                    }
                });
        connect(main_.get(), &QWindow::activeChanged, this, [this] {
            if (main_->isActive()) {
                system_.setRegular();
            }
        });
    }
    system_.bringToFront(*main_, token);
}

void WindowControl::openPage(Page page) {
    monitor_.setSelectedPage(page);
    openMain();
}

void WindowControl::createReport() {
    models_.report()->create();
}

void WindowControl::togglePanel(const QRect& itemPlace, const QString& token) {
    // While a dialog is open, our other windows ignore input. The panel grabs all presses on the screen, so
    // if it opened now, the mouse would be dead everywhere.
    if (QWindow* const dialog = QGuiApplication::modalWindow()) {
        if (dialog->isVisible()) { // not so where Qt's dialog only stands for a native one
            system_.bringToFront(*dialog, token);
        }
        return;
    }
    if (system_.isAskingSavePath()) {
        return;
    }
    panel_.toggle(itemPlace, token);
}

void WindowControl::showAlert(const AlertTexts& texts, std::function<void()> accepted) {
    panel_.close();
    stopListening(alert_.get());
    alert_ = makeWindow(alertWindowFile(), {{QStringLiteral("heading"), texts.title},
                                            {QStringLiteral("message"), texts.body},
                                            {QStringLiteral("acceptText"), texts.accept},
                                            {QStringLiteral("laterText"), texts.later}});
    watchVisibility(*alert_);
    acceptAlert_ = std::move(accepted);
    connect(alert_.get(), SIGNAL(accepted()), this, SLOT(alertAccepted()));
    system_.bringToFront(*alert_, {});
}

void WindowControl::alertAccepted() {
    if (const auto accepted = std::exchange(acceptAlert_, nullptr)) {
        accepted();
    }
}

bool WindowControl::eventFilter(QObject* watched, QEvent* event) {
    if (watched == main_.get() && event->type() == QEvent::PlatformSurface &&
        static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceCreated) {
        system_.configure(*main_);
    }
    return QObject::eventFilter(watched, event);
}

void WindowControl::stopListening(QQuickWindow* window) {
    if (window == nullptr) {
        return;
    }
    window->removeEventFilter(this);
    window->disconnect(this);
}

void WindowControl::watchVisibility(QQuickWindow& window) {
    connect(&window, &QWindow::visibilityChanged, this, &WindowControl::updateAwake);
    connect(&window, &QWindow::visibleChanged, this, &WindowControl::updateAwake);
}

void WindowControl::updateAwake() {
    const bool awake = canBeSeen(main_.get()) || canBeSeen(panel_.window());
    models_.setAwake(awake);
    rest_.start(awake ? shownTrimDelay : trimDelay);
    if (main_ && !main_->isVisible()) {
        system_.setAccessory();
    }
}

void WindowControl::applyTheme() {
    appearance_.choose(choiceOf(monitor_.theme())); // first, because it may change the system's appearance
    applyAppearance();
}

void WindowControl::applyAppearance() {
    if (!engine_) {
        return;
    }
    const int type = qmlTypeId("Fenwhirl.Components", 1, 0, "Theme");
    auto* theme = engine_->singletonInstance<Theme*>(type);
    if (theme == nullptr) {
        return; // no window yet
    }
    const bool dark = monitor_.theme() == AppTheme::dark ||
                      (monitor_.theme() == AppTheme::automatic && appearance_.isDark());
    theme->setReducedMotion(appearance_.prefersReducedMotion());
    theme->setTextScale(appearance_.textScale());
    theme->setDark(dark);
    QGuiApplication::setPalette(dialogPalette(dark));
}

void WindowControl::retranslate() {
    models_.retranslate();
    if (engine_) {
        engine_->retranslate();
    }
}

} // namespace Fenwhirl
