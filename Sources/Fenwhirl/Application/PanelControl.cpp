#include "Fenwhirl/Application/PanelControl.h"

#include "Fenwhirl/Platform/Desktop/PanelPlacement.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QStyleHints>

#include <utility>

namespace Fenwhirl {

namespace {

// The click that closes the panel may be on the status item, which then reports it as a
// request to open the panel.
constexpr qint64 reopenGuardMilliseconds = 250;
constexpr int screenMargin = 16;

// Lays out the items, innermost first. A window would otherwise do so with its first frame, and its size
// would not be known before.
void layOut(QQuickItem& item) {
    for (QQuickItem* child : item.childItems()) {
        layOut(*child);
    }
    item.ensurePolished();
}

} // namespace

PanelControl::PanelControl(Maker maker, std::function<bool()> focusFollowsPointer)
    : maker_(std::move(maker))
    , focusFollowsPointer_(std::move(focusFollowsPointer)) {}

PanelControl::~PanelControl() {
    discardWindow();
}

void PanelControl::toggle(const QRect& itemPlace, const QString& token) {
    if (window_ && window_->isVisible()) {
        // The second half of a double click is ignored.
        if (opened_.elapsed() >= QGuiApplication::styleHints()->mouseDoubleClickInterval()) {
            close();
        }
        return;
    }
    if (closed_.isValid() && closed_.elapsed() < reopenGuardMilliseconds) {
        return;
    }
    Q_EMIT opening();
    const PanelCompositing surroundings = panelSurroundings();
    // Whether a window can be translucent is fixed when it is created.
    if (!window_ || surroundings != surroundings_) {
        make(surroundings);
    }
    itemPlace_ = itemPlace;
    QScreen* const screen = QGuiApplication::screenAt(itemPlace.center());
    window_->setScreen(screen != nullptr ? screen : QGuiApplication::primaryScreen());
    window_->setProperty("maximumPanelHeight",
                         window_->screen()->availableGeometry().height() - 2 * screenMargin);
    layOut(*window_->contentItem());
    place();
    hasBeenEntered_ = !focusFollowsPointer_();
    opened_.start();
    showStatusPanel(*window_, token);
    watch_ = OutsideClickMonitor::begin(*window_, itemPlace_, [this] { close(); });
}

void PanelControl::make(PanelCompositing surroundings) {
    discardWindow();
    window_ = maker_({{QStringLiteral("composed"), surroundings != PanelCompositing::cut},
                      {QStringLiteral("shadowed"), surroundings == PanelCompositing::shadowed}});
    surroundings_ = surroundings;
    window_->setFlags(statusPanelFlags());
    prepareStatusPanel(*window_);
    window_->installEventFilter(this);
    connect(window_.get(), &QWindow::activeChanged, this, [this] {
        if (!window_->isActive() && hasBeenEntered_) {
            close();
        }
    });
    // The content, and with it the size, may change while the panel is shown.
    connect(window_.get(), SIGNAL(panelAreaChanged()), this, SLOT(place()));
    connect(window_.get(), &QWindow::visibleChanged, this, [this](bool visible) {
        if (visible) {
            return;
        }
        closed_.start();
        // Deferred, because the press watch itself may be the caller.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!window_ || !window_->isVisible()) {
                    watch_.reset();
                }
            },
            Qt::QueuedConnection);
    });
    connect(window_.get(), &QWindow::visibleChanged, this, &PanelControl::visibilityChanged);
    connect(window_.get(), &QWindow::visibilityChanged, this, &PanelControl::visibilityChanged);
}

void PanelControl::discardWindow() {
    if (!window_) {
        return;
    }
    watch_.reset();
    // While it is being destroyed, the window still emits signals, but is no longer a QQuickWindow.
    window_->removeEventFilter(this);
    window_->disconnect(this);
    window_.reset();
}

void PanelControl::place() {
    const QRect free = window_->screen()->availableGeometry();
    // The panel without the margin of its window.
    const QRect panel = window_->property("panelArea").toRectF().toRect();
    window_->setPosition(panelPosition(itemPlace_, panel.size(), free) - panel.topLeft());
    const int margin = panel.left(); // the same on all sides, except that the shadow is offset downwards
    declareShadow(*window_, {margin, panel.top(), margin, 2 * margin - panel.top()});
}

void PanelControl::close() {
    if (!window_ || !window_->isVisible()) {
        return;
    }
    window_->setMouseGrabEnabled(false);
    window_->close();
}

bool PanelControl::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Expose:
        if (window_->isExposed()) {
            grabPresses(*window_);
        }
        break;
    case QEvent::WindowBlocked:
        // A modal window has been opened. The panel no longer receives input, so it must not grab any.
        close();
        break;
    case QEvent::Enter:
    case QEvent::KeyPress:
        hasBeenEntered_ = true;
        break;
    case QEvent::MouseButtonPress:
        // While the panel grabs the mouse, presses outside it arrive here, too.
        if (!QRect(QPoint(), window_->size())
                 .contains(static_cast<QMouseEvent*>(event)->position().toPoint())) {
            close();
            return true;
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace Fenwhirl
