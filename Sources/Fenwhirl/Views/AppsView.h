// The view model of the applications page: the list, the application with the highest load, and the question
// asked before an application is quit.
//
// Processes are sampled only while the page can be seen: `pageShown` must be set and the view awake. An open
// question keeps its application, however the list changes in the meantime.
//
// Threads: main thread only.

#pragma once

#include "Fenwhirl/Processes/ProcessMonitor.h"
#include "Fenwhirl/Views/AppList.h"
#include "Fenwhirl/Views/LiveView.h"

#include <QString>

#include <optional>

namespace Fenwhirl {

class AppsView : public Fenwhirl::LiveView {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(Fenwhirl::AppList* apps READ apps CONSTANT)
    Q_PROPERTY(QString calloutText READ calloutText NOTIFY calloutTextChanged)
    Q_PROPERTY(bool pageShown READ pageShown WRITE setPageShown NOTIFY pageShownChanged)
    Q_PROPERTY(bool asking READ asking NOTIFY askingChanged)
    Q_PROPERTY(QString questionTitle READ questionTitle NOTIFY askingChanged)
    Q_PROPERTY(QString questionIconSource READ questionIconSource NOTIFY askingChanged)

public:
    AppsView(ProcessMonitor& processes, IconSource iconSource, QObject* parent = nullptr);

    [[nodiscard]] AppList* apps() { return &apps_; }

    [[nodiscard]] QString calloutText() const { return calloutText_; }

    [[nodiscard]] bool pageShown() const { return pageShown_; }

    void setPageShown(bool shown);

    [[nodiscard]] bool asking() const { return askedAbout_.has_value(); }

    [[nodiscard]] QString questionTitle() const;
    [[nodiscard]] QString questionIconSource() const;

    // Opens the question for the application with this `appId`. Does nothing when it has left the list.
    Q_INVOKABLE void askToQuit(const QString& appId);

    // The three answers. Each closes the question.
    Q_INVOKABLE void quit() { answer(false); }

    Q_INVOKABLE void forceQuit() { answer(true); }

    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void calloutTextChanged();
    void pageShownChanged();
    void askingChanged();

protected:
    void connectModels() override;
    void disconnectModels() override;
    void refresh() override;

private:
    void answer(bool force);
    void updateSampling(bool awake);

    ProcessMonitor& processes_;
    IconSource iconSource_;
    AppList apps_;
    QString calloutText_;
    std::optional<AppLoad> askedAbout_;
    bool pageShown_ = false;
};

} // namespace Fenwhirl
