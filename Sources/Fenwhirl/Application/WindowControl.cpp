#include "Fenwhirl/Application/WindowControl.h"

#include "Fenwhirl/Application/ApplicationIconProvider.h"
#include "Fenwhirl/Platform/Desktop/MainWindowBehaviour.h"
#include "Fenwhirl/Platform/Desktop/PanelPlacement.h"
#include "Fenwhirl/Platform/Desktop/SystemSymbol.h"
#include "Fenwhirl/Platform/RestingMemory.h"
#include "Fenwhirl/Views/Components/SystemSymbols.h"
#include "Fenwhirl/Views/Components/Theme.h"
#include "Fenwhirl/Views/Views.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QStyleHints>

#include <utility>

namespace {

// The click that closes the panel may be on the status item and be reported as a wish to open it just after.
constexpr qint64 reopenGuardMilliseconds = 250;
constexpr int panelMargin = 16;

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

// Innermost first. A window lays its content out with its first picture, and only then knows how large it is.
void layOut(QQuickItem& item) {
    for (QQuickItem* child : item.childItems())
        layOut(*child);
    item.ensurePolished();
}

ViewServices withOpenMain(ViewServices services, std::function<void()> openMain) {
    services.openMain = std::move(openMain);
    return services;
}

} // namespace

WindowControl::WindowControl(Monitor& monitor, ProcessMonitor& processes, SystemAppearance& appearance,
                             ViewServices services, QObject* parent)
    : QObject(parent)
    , monitor_(monitor)
    , appearance_(appearance)
    , models_(monitor, processes, withOpenMain(std::move(services), [this] { openMain(); })) {
    connect(&monitor, &Monitor::themeChanged, this, &WindowControl::applyTheme);
    connect(&monitor, &Monitor::languageChanged, this, &WindowControl::retranslate);
    connect(&appearance, &SystemAppearance::changed, this, &WindowControl::applyAppearance);
    rest_.setSingleShot(true);
    rest_.setInterval(restPatience);
    connect(&rest_, &QTimer::timeout, this, [] { giveBackRestingMemory(); });
    rest_.start();
    applyTheme();
}

WindowControl::~WindowControl() {
    for (QQuickWindow* window : {main_.get(), panel_.get(), alert_.get()})
        stopListening(window);
}

QQmlEngine& WindowControl::engine() {
    if (!engine_) {
        registerViews();
        Fenwhirl::setSystemSymbolSource(systemSymbol);
        engine_ = std::make_unique<QQmlEngine>();
        engine_->addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine_->addImageProvider(ApplicationIconProvider::name(),
                                  new ApplicationIconProvider); // the engine owns it
    }
    return *engine_;
}

std::unique_ptr<QQuickWindow> WindowControl::makeWindow(const QUrl& file, const QVariantMap& properties) {
    QQmlComponent component(&engine(), file);
    if (!component.isReady())
        qFatal("A window could not be made: %s", qUtf8Printable(component.errorString()));
    applyAppearance(); // the file's imports have brought the theme, and nothing is drawn yet
    QObject* object = component.createWithInitialProperties(properties);
    std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow*>(object));
    if (!window) {
        delete object;
        qFatal("A window could not be made: %s", qUtf8Printable(component.errorString()));
    }
    watchVisibility(*window);
    window->installEventFilter(this);
    return window;
}

QVariantMap WindowControl::withModels() {
    return {{QStringLiteral("models"), QVariant::fromValue(&models_)}};
}

void WindowControl::appear() {
    if (!std::exchange(hideOnFirstAppearance, false))
        openMain();
}

void WindowControl::openMain(const QString& token) {
    closePanel();
    MainWindowBehaviour::setRegular();
    if (!main_) {
        models_.setAwake(true); // the first picture shows what there is
        main_ = makeWindow(mainWindowFile(), withModels());
        connect(main_.get(), &QWindow::activeChanged, this, [this] {
            if (main_->isActive())
                MainWindowBehaviour::setRegular();
        });
    }
    MainWindowBehaviour::bringToFront(*main_, token);
}

void WindowControl::togglePanel(const QRect& itemPlace, const QString& token) {
    if (panel_ && panel_->isVisible()) {
        // The second half of a double click asks for nothing.
        if (panelOpened_.elapsed() >= QGuiApplication::styleHints()->mouseDoubleClickInterval())
            closePanel();
        return;
    }
    if (panelClosed_.isValid() && panelClosed_.elapsed() < reopenGuardMilliseconds)
        return;
    models_.setAwake(true);
    const PanelSurroundings surroundings = panelSurroundings();
    // Whether a window can be translucent is settled when it is made.
    if (!panel_ || surroundings != panelSurroundings_)
        makePanel(surroundings);
    itemPlace_ = itemPlace;
    QScreen* const screen = QGuiApplication::screenAt(itemPlace.center());
    panel_->setScreen(screen != nullptr ? screen : QGuiApplication::primaryScreen());
    panel_->setProperty("maximumPanelHeight",
                        panel_->screen()->availableGeometry().height() - 2 * panelMargin);
    layOut(*panel_->contentItem());
    placePanel();
    panelReached_ = !focusFollowsPointer();
    panelOpened_.start();
    showStatusPanel(*panel_, token);
}

void WindowControl::makePanel(PanelSurroundings surroundings) {
    stopListening(panel_.get());
    QVariantMap properties = withModels();
    properties.insert(QStringLiteral("composed"), surroundings != PanelSurroundings::cut);
    properties.insert(QStringLiteral("shadowed"), surroundings == PanelSurroundings::shadowed);
    panel_ = makeWindow(menuPanelFile(), properties);
    panelSurroundings_ = surroundings;
    panel_->setFlags(statusPanelFlags());
    connect(panel_.get(), &QWindow::activeChanged, this, [this] {
        if (!panel_->isActive() && panelReached_)
            closePanel();
    });
    // Its content may change while it is shown.
    connect(panel_.get(), SIGNAL(panelAreaChanged()), this, SLOT(placePanel()));
    connect(panel_.get(), &QWindow::visibleChanged, this, [this](bool visible) {
        if (!visible)
            panelClosed_.start();
    });
}

void WindowControl::showAlert(const AlertTexts& texts, std::function<void()> accepted) {
    stopListening(alert_.get());
    alert_ = makeWindow(alertWindowFile(), {{QStringLiteral("heading"), texts.title},
                                            {QStringLiteral("message"), texts.body},
                                            {QStringLiteral("acceptText"), texts.accept},
                                            {QStringLiteral("laterText"), texts.later}});
    acceptAlert_ = std::move(accepted);
    connect(alert_.get(), SIGNAL(accepted()), this, SLOT(alertAccepted()));
    MainWindowBehaviour::bringToFront(*alert_, {});
}

void WindowControl::alertAccepted() {
    if (const auto accepted = std::exchange(acceptAlert_, nullptr))
        accepted();
}

void WindowControl::placePanel() {
    const QRect free = panel_->screen()->availableGeometry();
    // The panel without the margin of its window.
    const QRect panel = panel_->property("panelArea").toRectF().toRect();
    panel_->setPosition(panelPosition(itemPlace_, panel.size(), free) - panel.topLeft());
    const int margin = panel.left(); // on all sides; the shadow falls a little
    declareShadow(*panel_, {margin, panel.top(), margin, 2 * margin - panel.top()});
}

void WindowControl::closePanel() {
    if (!panel_ || !panel_->isVisible())
        return;
    panel_->setMouseGrabEnabled(false);
    panel_->close();
}

bool WindowControl::eventFilter(QObject* watched, QEvent* event) {
    auto* window = qobject_cast<QQuickWindow*>(watched);
    switch (event->type()) {
    case QEvent::PlatformSurface:
        if (window == main_.get() && window != nullptr &&
            static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                QPlatformSurfaceEvent::SurfaceCreated)
            MainWindowBehaviour::configure(*window);
        break;
    case QEvent::Expose:
        if (panel_ && window == panel_.get() && window->isExposed())
            grabPresses(*window);
        break;
    case QEvent::Enter:
    case QEvent::KeyPress:
        if (panel_ && window == panel_.get())
            panelReached_ = true;
        break;
    case QEvent::MouseButtonPress:
        if (panel_ && window == panel_.get() &&
            !QRect(QPoint(), window->size())
                 .contains(static_cast<QMouseEvent*>(event)->position().toPoint())) {
            closePanel();
            return true;
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void WindowControl::stopListening(QQuickWindow* window) {
    if (window == nullptr)
        return;
    window->removeEventFilter(this);
    window->disconnect(this);
}

void WindowControl::watchVisibility(QQuickWindow& window) {
    connect(&window, &QWindow::visibilityChanged, this, &WindowControl::updateAwake);
    connect(&window, &QWindow::visibleChanged, this, &WindowControl::updateAwake);
}

void WindowControl::updateAwake() {
    const bool awake = canBeSeen(main_.get()) || canBeSeen(panel_.get());
    models_.setAwake(awake);
    if (!awake)
        rest_.start();
    if (main_ && !main_->isVisible())
        MainWindowBehaviour::setAccessory();
}

void WindowControl::applyTheme() {
    appearance_.choose(choiceOf(monitor_.theme())); // first: it may change what the system's appearance is
    applyAppearance();
}

void WindowControl::applyAppearance() {
    if (!engine_)
        return;
    const int type = qmlTypeId("Fenwhirl.Components", 1, 0, "Theme");
    auto* theme = engine_->singletonInstance<Fenwhirl::Theme*>(type);
    if (theme == nullptr)
        return; // no window yet
    const bool dark = monitor_.theme() == AppTheme::dark ||
                      (monitor_.theme() == AppTheme::automatic && appearance_.isDark());
    theme->setReducedMotion(appearance_.prefersReducedMotion());
    theme->setTextScale(appearance_.textScale());
    theme->setDark(dark);
}

void WindowControl::retranslate() {
    models_.retranslate();
    if (engine_)
        engine_->retranslate();
}
