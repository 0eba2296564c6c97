#include "Fenwhirl/Views/AppsView.h"

#include "Fenwhirl/Localization/DisplayText.h"
#include "Fenwhirl/Localization/Localizer.h"
#include "Fenwhirl/Localization/NumberFormat.h"

#include <algorithm>
#include <utility>

namespace Fenwhirl {

AppsView::AppsView(ProcessMonitor& processes, IconSource iconSource, QObject* parent)
    : LiveView(parent)
    , processes_(processes)
    , iconSource_(std::move(iconSource)) {}

void AppsView::connectModels() {
    connect(&processes_, &ProcessMonitor::appsChanged, this, &AppsView::refresh);
    updateSampling(true);
}

void AppsView::disconnectModels() {
    processes_.disconnect(this);
    updateSampling(false);
}

void AppsView::updateSampling(bool awake) {
    if (awake && pageShown_) {
        processes_.start();
    } else {
        processes_.stop();
    }
}

void AppsView::setPageShown(bool shown) {
    if (std::exchange(pageShown_, shown) == shown) {
        return;
    }
    updateSampling(isAwake());
    if (!shown) {
        cancel();
    }
    Q_EMIT pageShownChanged();
}

void AppsView::refresh() {
    QList<AppListEntry> rows;
    const QList<AppLoad>& apps = processes_.apps();
    rows.reserve(apps.size());
    for (const AppLoad& app : apps) {
        rows.append(shown(app, askedAbout_ && askedAbout_->id == app.id, iconSource_));
    }
    apps_.setApps(rows);

    const QString callout =
        apps.isEmpty()
            ? QString()
            : localized(u"%@ utilise %@ du processeur.",
                        {displayText(apps.first().name), NumberFormat::percentText(apps.first().cpu)});
    if (std::exchange(calloutText_, callout) != callout) {
        Q_EMIT calloutTextChanged();
    }
    Q_EMIT askingChanged(); // the title depends on the language
}

QString AppsView::questionTitle() const {
    return askedAbout_ ? localized(u"Fermer %@ ?", {displayText(askedAbout_->name)}) : QString();
}

QString AppsView::questionIconSource() const {
    return askedAbout_ ? shown(*askedAbout_, true, iconSource_).iconSource : QString();
}

void AppsView::askToQuit(const QString& appId) {
    const QList<AppLoad>& apps = processes_.apps();
    const auto app =
        std::find_if(apps.begin(), apps.end(), [&appId](const AppLoad& each) { return each.id == appId; });
    if (app == apps.end()) {
        return;
    }
    askedAbout_ = *app;
    refresh();
}

void AppsView::answer(bool force) {
    if (!askedAbout_) {
        return;
    }
    const AppLoad app = *std::exchange(askedAbout_, std::nullopt);
    processes_.quit(app, force);
    refresh();
}

void AppsView::cancel() {
    if (std::exchange(askedAbout_, std::nullopt)) {
        refresh();
    }
}

} // namespace Fenwhirl
