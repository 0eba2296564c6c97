// The status item's panel: opened at the item, closed by a second click, by a press anywhere else and by
// losing the focus.
//
// The window is made when it is first wanted and kept; made anew when what it stands on composes windows
// now, or does no longer.
//
// Threads: main thread only.

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

class PanelControl : public QObject {
    Q_OBJECT

public:
    // Makes the panel's window with these properties beside its own.
    using Maker = std::function<std::unique_ptr<QQuickWindow>(const QVariantMap& properties)>;

    explicit PanelControl(Maker maker);
    ~PanelControl() override;

    PanelControl(const PanelControl&) = delete;
    PanelControl& operator=(const PanelControl&) = delete;

    // Opens the panel at the status item's place, or closes it when it is open. `token` is the desktop's
    // permission to take the focus.
    void toggle(const QRect& itemPlace, const QString& token);
    void close();

    // Null before it was first opened.
    [[nodiscard]] QQuickWindow* window() const { return window_.get(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    // It is about to open, and what it shows should be there.
    void opening();
    // Its window was shown, hidden, minimised or brought back; not while it is forgotten.
    void visibilityChanged();

private Q_SLOTS:
    void place();

private:
    void make(PanelSurroundings surroundings);
    void forgetWindow();

    Maker maker_;
    std::unique_ptr<QQuickWindow> window_;
    PanelSurroundings surroundings_ = PanelSurroundings::cut;
    QRect itemPlace_;
    std::unique_ptr<PressWatch> watch_; // while the window is shown
    bool isReached_ = false;            // somebody has come to it since it opened
    QElapsedTimer opened_;
    QElapsedTimer closed_;
};
