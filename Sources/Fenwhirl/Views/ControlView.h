// The state of fan control for banners, buttons and settings: the privileged helper, and the last error.
//
// Enabling control is offered only while the user wants manual control of some fan and the helper is missing.
// If a helper of another version is installed, an update is offered instead. Installation and removal run in
// the background; `installing` is true during an installation.
//
// Threads: main thread only.

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Views/LiveView.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace Fenwhirl {

class ControlView : public Fenwhirl::LiveView {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool installed READ installed NOTIFY changed)
    Q_PROPERTY(bool outdated READ outdated NOTIFY changed)
    Q_PROPERTY(bool offersActivation READ offersActivation NOTIFY changed)
    Q_PROPERTY(bool installing READ installing NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed) // empty when there is none

public:
    explicit ControlView(Monitor& monitor, QObject* parent = nullptr);

    [[nodiscard]] bool installed() const { return monitor_.helperInstalled(); }

    [[nodiscard]] bool outdated() const { return monitor_.helperInstalled() && monitor_.helperOutdated(); }

    [[nodiscard]] bool offersActivation() const {
        return monitor_.needsHelper() && !monitor_.helperInstalled();
    }

    [[nodiscard]] bool installing() const { return monitor_.isInstalling(); }

    [[nodiscard]] QString error() const { return monitor_.controlError(); }

    Q_INVOKABLE void install() { monitor_.installHelper(); }

    Q_INVOKABLE void uninstall() { monitor_.uninstallHelper(); }

    Q_INVOKABLE void resetToAutomatic() { monitor_.resetToAutomatic(); }

    Q_INVOKABLE void dismissError() { monitor_.dismissControlError(); }

Q_SIGNALS:
    void changed();

protected:
    void connectModels() override;
    void disconnectModels() override;

    void refresh() override { Q_EMIT changed(); }

private:
    Monitor& monitor_;
};

} // namespace Fenwhirl
