// The status item's panel. It opens at the item; a second click, a press anywhere else, the loss of focus and
// a modal window close it.
//
// The window is created when the panel is first opened, and kept. It is created again when compositing on the
// desktop was switched on or off since then, because that decides whether the window can be translucent.
//

#pragma once

#include "Fenwhirl/Platform/Desktop/StatusPanel.h"

#include <QElapsedTimer>
#include <QObject>
#include <QRect>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

class QQuickWindow;

namespace Fenwhirl {

class PanelControl : public QObject {
    Q_OBJECT

public:
    // Creates the panel's window with these properties in addition to its own.
    using Maker = std::function<std::unique_ptr<QQuickWindow>(const QVariantMap& properties)>;

    PanelControl(Maker maker, std::function<bool()> focusFollowsPointer);
    ~PanelControl() override;

    PanelControl(const PanelControl&) = delete;
    PanelControl& operator=(const PanelControl&) = delete;

    // Opens the panel at the status item's position, or closes it when it is open. `token` is the desktop's
    // permission to take the focus.
    void toggle(const QRect& itemPlace, const QString& token);
    void close();

    // Null before the panel was first opened.
    [[nodiscard]] QQuickWindow* window() const { return window_.get(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    // The panel is about to open; its content should be up to date.
    void opening();
    // The panel's window was shown, hidden, minimised or restored; not emitted while the
    // window is being discarded.
    void visibilityChanged();

private Q_SLOTS:
    void place();

private:
    void make(PanelCompositing surroundings);
    void discardWindow();

    Maker maker_;
    std::function<bool()> focusFollowsPointer_;
    std::unique_ptr<QQuickWindow> window_;
    PanelCompositing surroundings_ = PanelCompositing::cut;
    QRect itemPlace_;
    std::unique_ptr<OutsideClickMonitor> watch_; // while the window is shown
    bool hasBeenEntered_ = false;                // the pointer or the keyboard has reached it since it opened
    QElapsedTimer opened_;
    QElapsedTimer closed_;
};

} // namespace Fenwhirl
