#include "Fenwhirl/Updates/UpdateChecker.h"

#include "Fenwhirl/Localization/DisplayText.h"
#include "Fenwhirl/Platform/BundleInfo.h"
#include "Fenwhirl/Platform/PreferencesStore.h"
#include "Fenwhirl/Updates/UpdateFetch.h"
#include "Fenwhirl/Updates/UpdateTexts.h"
#include "Fenwhirl/Updates/UpdateVersion.h"

#include <QPointer>

#include <chrono>
#include <utility>

namespace {

constexpr double secondsPerDay = 86'400;

QString lastCheckKey() {
    return QStringLiteral("brenor.update.lastCheck");
}

QString notifiedVersionKey() {
    return QStringLiteral("brenor.update.notifiedVersion");
}

} // namespace

UpdateServices systemUpdateServices() {
    UpdateServices services;
    services.now = [] {
        const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
        return std::chrono::duration<double>(sinceEpoch).count();
    };
    services.bundleName = BundleInfo::name();
    services.bundleVersion = BundleInfo::shortVersion();
    services.domain = QStringLiteral(FENWHIRL_UPDATE_DOMAIN);
    return services;
}

UpdateChecker::UpdateChecker(UpdateServices services, QObject* parent)
    : QObject(parent)
    , services_(std::move(services)) {
    thread_.setObjectName(QStringLiteral("fenwhirl.updates"));
}

UpdateChecker::~UpdateChecker() {
    thread_.quit();
    thread_.wait();
}

void UpdateChecker::startIfNeeded() {
    const double now = services_.now();
    const double lastCheck = services_.preferences->number(lastCheckKey()).value_or(0);
    if (now - lastCheck < secondsPerDay || thread_.isRunning() || !services_.bundleName) {
        return;
    }
    const std::optional<QUrl> address = updateDocumentAddress(services_.domain, *services_.bundleName);
    if (!address) {
        return;
    }
    // Everything of the network is made on its thread: the first use of TLS reads all the system's
    // authorities.
    auto* const worker = new QObject;
    worker->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, worker, &QObject::deleteLater);
    thread_.start();
    QMetaObject::invokeMethod(worker, [this, worker, address = *address, now] {
        const QString userAgent = *services_.bundleName + u'/' + currentVersion();
        auto* const fetch = new UpdateFetch(services_.transport, userAgent, worker);
        fetch->start(address, [this, now](const std::optional<QByteArray>& body) { checkAnswer(body, now); });
    });
}

QString UpdateChecker::currentVersion() const {
    return services_.bundleVersion.value_or(QStringLiteral("0"));
}

// On the network's thread: reads what is fixed while a check runs, and the preferences.
void UpdateChecker::checkAnswer(const std::optional<QByteArray>& body, double startedAt) {
    std::optional<UpdateDocument> document;
    if (body) {
        document = parseUpdateDocument(*body, services_.domain);
    }
    if (document) {
        services_.preferences->setNumber(lastCheckKey(), startedAt);
        if (!isNewer(document->version, currentVersion()) ||
            services_.preferences->text(notifiedVersionKey()) == document->version) {
            document.reset();
        }
    }
    QMetaObject::invokeMethod(
        this,
        [this, document = std::move(document)] {
            thread_.quit();
            // The alert runs an event loop of its own, in which the program may end.
            const QPointer<UpdateChecker> alive(this);
            if (document) {
                offer(*document);
            }
            if (alive) {
                Q_EMIT finished();
            }
        },
        Qt::QueuedConnection);
}

void UpdateChecker::offer(const UpdateDocument& document) {
    // Before the alert, so that it is shown at most once even if the program ends while it is open.
    services_.preferences->setText(notifiedVersionKey(), document.version);
    // A copy, because the program may end while the alert is open, and this object with it.
    const auto show = services_.show;
    show(updateAlert(services_.languageCode(), services_.bundleName.value_or(QString()), currentVersion(),
                     document));
}

UpdateAlert updateAlert(const QString& languageCode, const QString& name, const QString& current,
                        const UpdateDocument& document) {
    const UpdateTexts texts = updateTexts(languageCode);
    return {texts.title, updateBody(texts, displayText(document.version), name, current), texts.download,
            texts.later, document.page};
}
