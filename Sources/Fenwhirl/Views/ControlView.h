// The state of fan control as banners, buttons and settings show it: the privileged helper, and what went
// wrong.
//
// The offer to enable control stands only while some fan is wanted under manual control and the helper is
// missing; an installed helper of another version is offered an update instead. Installing and removing run
// in the background; `installing` says so.
//
// Threads: main thread only.

#pragma once

#include "Fenwhirl/Monitoring/Monitor.h"
#include "Fenwhirl/Views/LiveView.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

class ControlView : public LiveView {
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
